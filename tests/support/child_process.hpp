// A program that a test starts and that ends with it, however the test ends.
#pragma once

#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace support {

class ChildProcess {
 public:
  struct Start {
    std::vector<std::string> command;      // the program is looked up in PATH
    std::vector<std::string> environment;  // "NAME=value"; nothing else is handed on
    std::string input;                     // its standard input, at most a pipe's capacity
    std::string errorFile = {};            // for its standard error; empty: the test's own
    std::string package = {};              // Debian's, to name where the program is missing
    int endSignal = SIGKILL;               // any other is followed by SIGKILL where it does not help
  };

  /// Throws std::runtime_error, naming the program, where it cannot be started.
  explicit ChildProcess(const Start& start);
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;
  ~ChildProcess();

  pid_t id() const { return process_; }
  bool hasEnded() const;

  /// The first line on its standard output, without the line end; empty when it ended before or the time is over.
  std::string firstLine(std::chrono::steady_clock::duration patience = std::chrono::seconds(30));

  /// The exit status, 128 and the signal's number for a signal; absent when it still runs then.
  std::optional<int> exitStatus(std::chrono::steady_clock::duration patience = std::chrono::seconds(30)) const;

  /// Returns when the program has stopped.
  void freeze();
  void thaw();

  /// Ends it at once, as a crash would.
  void kill();

 private:
  /// Whether it has ended by then.
  bool endsWithin(std::chrono::steady_clock::duration patience) const;

  pid_t process_ = -1;
  int output_ = -1;
  int endSignal_ = SIGKILL;
};

}  // namespace support
