// Notices that a device token was stored, wherever the extension looks for one. It starts no daemon.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "base/descriptors/file_descriptor.hpp"
#include "platform/keychain/session_bus.hpp"

namespace host {

class CredentialChanges {
 public:
  /// Reads the environment as the extension does.
  CredentialChanges();

  std::vector<int> descriptors() const;
  /// Whether a token may be there that was not before. A change of any item of a Secret Service counts.
  bool take();

 private:
  bool takeFiles();
  void watchDeepestFolder();
  void watchSecretService();

  base::FileDescriptor inotify_;
  int watch_ = -1;
  std::optional<std::filesystem::path> token_;  ///< the file of the token
  std::optional<platform::SessionBus> bus_;
};

}  // namespace host
