#include "support/child_process.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace support {
namespace {

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

/// Whether there is something to read, or an end.
bool awaitInput(int descriptor, Clock::time_point end) {
  pollfd polled{descriptor, POLLIN, 0};
  int ready = 0;
  do {
    ready = poll(&polled, 1, millisecondsUntil(end));
  } while (ready < 0 && errno == EINTR);
  return ready > 0;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const auto& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

std::array<int, 2> makePipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return ends;
}

}  // namespace

ChildProcess::ChildProcess(const Start& start) : endSignal_(start.endSignal) {
  const auto arguments = pointersTo(start.command);
  const auto environment = pointersTo(start.environment);
  const auto input = makePipe();
  const auto output = makePipe();
  const auto failure = makePipe();
  const pid_t parent = getpid();
  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    if (!start.errorFile.empty()) {
      const int errors = open(start.errorFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
      if (errors >= 0) dup2(errors, STDERR_FILENO);
    }
    execvpe(arguments[0], arguments.data(), environment.data());
    [[maybe_unused]] const auto told = write(failure[1], "x", 1);
    _exit(127);
  }
  close(input[0]);
  close(output[1]);
  close(failure[1]);
  output_ = output[0];
  [[maybe_unused]] const auto written = write(input[1], start.input.data(), start.input.size());
  close(input[1]);
  char failed = 0;
  const bool started = process_ > 0 && read(failure[0], &failed, 1) == 0;
  close(failure[0]);
  if (started) return;
  if (process_ > 0) waitpid(process_, nullptr, 0);
  close(output_);
  throw std::runtime_error(
      "cannot start " + start.command.front() +
      (start.package.empty() ? std::string("; is it installed?") : ": apt-get install " + start.package));
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : process_(std::exchange(other.process_, -1)),
      output_(std::exchange(other.output_, -1)),
      endSignal_(other.endSignal_) {}

ChildProcess::~ChildProcess() {
  if (process_ < 0) return;
  if (endSignal_ != SIGKILL) {
    ::kill(process_, endSignal_);
    endsWithin(std::chrono::seconds(10));
  }
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  close(output_);
}

bool ChildProcess::endsWithin(Clock::duration patience) const {
  const base::FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
  return awaitInput(process.get(), Clock::now() + patience);
}

bool ChildProcess::hasEnded() const { return endsWithin({}); }

std::optional<int> ChildProcess::exitStatus(Clock::duration patience) const {
  if (!endsWithin(patience)) return std::nullopt;
  // It stays to be waited for by the destructor.
  siginfo_t end{};
  if (waitid(P_PID, static_cast<id_t>(process_), &end, WEXITED | WNOWAIT) != 0) return std::nullopt;
  return end.si_code == CLD_EXITED ? end.si_status : 128 + end.si_status;
}

void ChildProcess::kill() {
  ::kill(process_, SIGKILL);
  endsWithin(std::chrono::seconds(10));
}

std::string ChildProcess::firstLine(Clock::duration patience) {
  const auto end = Clock::now() + patience;
  std::string line;
  char c = 0;
  while (awaitInput(output_, end)) {
    if (read(output_, &c, 1) != 1) break;
    if (c == '\n') return line;
    line += c;
  }
  return line;
}

void ChildProcess::freeze() {
  ::kill(process_, SIGSTOP);
  waitpid(process_, nullptr, WUNTRACED);
}

void ChildProcess::thaw() { ::kill(process_, SIGCONT); }

}  // namespace support
