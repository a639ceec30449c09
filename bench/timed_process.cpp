#include "timed_process.hpp"

#include <chrono>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;
using base::FileDescriptor;

struct Pipe {
  FileDescriptor readEnd, writeEnd;

  Pipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe2");
    readEnd = FileDescriptor(ends[0]);
    writeEnd = FileDescriptor(ends[1]);
  }
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& each : texts) result.push_back(each.data());
  result.push_back(nullptr);
  return result;
}

pid_t start(Command command, int input, int output, int errors) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
  pid_t process = -1;
  const int error = posix_spawn(&process, command.words[0].c_str(), &actions, nullptr, pointers(command.words).data(),
                                pointers(command.environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), "cannot start " + command.words[0]);
  return process;
}

double milliseconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

double millisecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// Waits for the program's end and gives the processor's time of it.
double finish(pid_t process, const std::string& program) {
  int status = 0;
  rusage usage{};
  while (wait4(process, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error(program + " failed");
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

}  // namespace

Measurement untilAnswered(const Command& command, const std::string& request) {
  Pipe input, output;
  // Fits the pipe, so it is there before the program is.
  if (write(input.writeEnd.get(), request.data(), request.size()) != static_cast<ssize_t>(request.size())) {
    throw std::runtime_error("the request could not be written");
  }
  Measurement result;
  const auto begin = Clock::now();
  const pid_t process = start(command, input.readEnd.get(), output.writeEnd.get(), STDERR_FILENO);
  output.writeEnd = FileDescriptor();
  while (!result.line.ends_with('\n')) {
    char bytes[64 * 1024];
    const ssize_t count = read(output.readEnd.get(), bytes, sizeof bytes);
    if (count <= 0) throw std::runtime_error(command.words[0] + " ended without an answer");
    result.line.append(bytes, static_cast<std::size_t>(count));
  }
  result.wallMs = millisecondsSince(begin);
  input.writeEnd = FileDescriptor();
  result.cpuMs = finish(process, command.words[0]);
  return result;
}

Measurement untilEnded(const Command& command) {
  const FileDescriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  Measurement result;
  const auto begin = Clock::now();
  const pid_t process = start(command, nothing.get(), nothing.get(), nothing.get());
  result.cpuMs = finish(process, command.words[0]);
  result.wallMs = millisecondsSince(begin);
  return result;
}

}  // namespace bench
