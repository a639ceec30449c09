// Programs of which one system call fails: a tracer (strace) makes the N-th call of a kind fail. Where nothing
// else is said, only the program's first thread is traced, so the processes that it starts are not.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace support {

struct TracedCommand {
  std::vector<std::string> words;        ///< the program with its path, and its arguments
  std::vector<std::string> environment;  ///< "NAME=value"; nothing else is handed on
};

/// Why no fault can be made to happen here, as a reason to skip a test; absent where it can. Throws std::runtime_error
/// where strace is not installed.
std::optional<std::string> reasonNotToTrace();

/// Makes `file` a program that runs another one, with its processes, as on a kernel without Landlock.
void writeProgramWithoutLandlock(const std::string& file, const std::string& program);

/// How often the program makes each system call when all of them succeed.
std::map<std::string, int> systemCallsOf(const TracedCommand& command);

struct SystemCallFault {
  std::string call;
  std::string error;  ///< "EIO"
  int at;             ///< counted from 1
};

/// The program's exit status, 128 and the signal's number for a signal; absent where it still ran after a minute.
std::optional<int> statusWith(const SystemCallFault& fault, const TracedCommand& command);

}  // namespace support
