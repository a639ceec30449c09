// The HTTP library and all that speaks to it are a module of their own: loading it and its thirty libraries takes
// longer than everything else an extension does that fetches nothing. Both sides are built together: the table and the
// values it takes have no meaning between builds.
#pragma once

#include <cstddef>
#include <expected>
#include <string>

#include "platform/url_session/load_queue.hpp"

namespace platform {

struct TransferSettings {
  /// A longer body ends its load with `tooLarge`.
  std::size_t longestBody;
  /// A file of trusted root certificates (PEM); empty for the system's.
  std::string trustedRootsFile;
};

struct TransferFunctions {
  const char* build;  ///< which build the module is of; another one is not called
  /// Does the queue's loads on the calling thread until the queue ends.
  void (*drive)(LoadQueue& queue, const TransferSettings& settings);
};

inline constexpr const char* transferModuleEntry = "vambaTransfers";
using TransferModuleEntry = const TransferFunctions* (*)();

/// Loads the module, for the rest of the process. It lies beside the program, or in the libexec folder of its build
/// tree. The error says why it could not be loaded, for a person.
std::expected<const TransferFunctions*, std::string> openTransferModule();

}  // namespace platform
