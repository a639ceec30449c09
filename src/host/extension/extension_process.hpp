// One extension process with its three streams: started, watched and ended together with whatever it started itself.
// What is said over the streams is extension_session.hpp's.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

#include "base/descriptors/file_descriptor.hpp"

namespace host {

/// The process leads a process group of its own, begins with no blocked signals and no descriptors but its streams, and
/// is killed when the thread that started it ends: start it from one that lives as long as it is needed.
class ExtensionProcess {
 public:
  /// `environment` ("NAME=VALUE") is added to this process's own. The error is a sentence for a person.
  static std::expected<ExtensionProcess, std::string> start(const std::filesystem::path& program,
                                                            const std::vector<std::string>& environment = {});

  ExtensionProcess(ExtensionProcess&&) noexcept = default;
  ExtensionProcess& operator=(ExtensionProcess&&) = delete;
  /// Kills what is left of the group and waits for the process.
  ~ExtensionProcess();

  // All non-blocking; `input` is -1 once closed.
  int input() const { return input_.get(); }
  int output() const { return output_.get(); }
  int diagnostics() const { return diagnostics_.get(); }
  /// Readable once the process ended (pidfd_open(2)). It tells so even while a grandchild keeps the streams open.
  int identity() const { return identity_.get(); }

  void closeInput() { input_.reset(); }
  bool ended() const;

  /// Kills the group, waits for the process and tells how it ended: "ended with status 3", "was ended by signal 11".
  std::string end();

 private:
  ExtensionProcess() = default;

  pid_t id_ = 0;
  base::FileDescriptor identity_;  // closed once the process is reaped
  base::FileDescriptor input_;
  base::FileDescriptor output_;
  base::FileDescriptor diagnostics_;
};

}  // namespace host
