// Programs that tests run beside themselves.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace support {

/// The program's file in PATH or the administrator's folders; absent where it is not installed.
std::optional<std::string> pathOf(const std::string& program);

/// A program that runs until the scope ends. It also ends with the thread that started it, so that a killed test leaves
/// nothing behind.
class RunningTool {
 public:
  /// Looks the program up in PATH and the administrator's folders; throws std::runtime_error with its package's name
  /// when it is missing. Its output goes to `outputFile`. `inherited` becomes its descriptor 3.
  RunningTool(const std::string& program, const std::string& package, std::vector<std::string> arguments,
              const std::string& outputFile, std::optional<int> inherited = std::nullopt,
              std::vector<std::string> extraEnvironment = {});
  ~RunningTool();
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

  /// The exit status, 128 and the signal's number for a signal.
  int wait();
  /// SIGTERM, then `wait`.
  int end();

 private:
  pid_t process_ = -1;
  int status_ = -1;
};

/// Runs to the end; throws std::runtime_error with what the program said when it fails.
void runTool(const std::string& program, const std::string& package, std::vector<std::string> arguments,
             const std::string& outputFile);

}  // namespace support
