// A program that a test starts and that ends with it, however the test ends.
#pragma once

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
  };

  /// Throws std::runtime_error, naming the program, where it cannot be started.
  explicit ChildProcess(const Start& start);
  ChildProcess(ChildProcess&& other) noexcept;
  ChildProcess& operator=(ChildProcess&&) = delete;
  ~ChildProcess();

  /// The first line on its standard output, without the line end; empty when it ended before.
  std::string firstLine();

  /// Returns when the program has stopped.
  void freeze();
  void thaw();

 private:
  pid_t process_ = -1;
  int output_ = -1;
};

}  // namespace support
