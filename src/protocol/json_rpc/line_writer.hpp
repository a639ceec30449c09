// Writes whole lines to a descriptor from any thread.
#pragma once

#include <expected>
#include <mutex>
#include <string>
#include <system_error>

namespace protocol::json_rpc {

class LineWriter {
 public:
  /// Does not own `descriptor`. The process must ignore or block SIGPIPE, so that a reader that has
  /// exited is reported as EPIPE.
  explicit LineWriter(int descriptor) : descriptor_(descriptor) {}

  /// Writes `line`, which holds no "\n", and its line end; returns when all of it is written. Lines of several
  /// threads never mix. After a failure, which may have cut a line, every later call fails with the same error.
  std::expected<void, std::error_code> write(std::string line);

 private:
  int descriptor_;
  std::mutex mutex_;
  std::error_code failure_;
};

}  // namespace protocol::json_rpc
