#include "support/extension_under_test.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/file_content.hpp"

namespace support {
namespace {

using Clock = std::chrono::steady_clock;
using nlohmann::json;

struct Pipe {
  base::FileDescriptor reading;
  base::FileDescriptor writing;

  Pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    reading.reset(ends[0]);
    writing.reset(ends[1]);
  }
};

int millisecondsUntil(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
  return static_cast<int>(std::max<decltype(left)>(left, 0));
}

std::vector<std::string> lines(ExtensionUnderTest::Environment environment) {
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) environment.try_emplace(name, value);
  }
  std::vector<std::string> result;
  for (const auto& [name, value] : environment) result.push_back(name + "=" + value);
  return result;
}

}  // namespace

ExtensionUnderTest::ExtensionUnderTest(const std::string& program, const Environment& environment) {
  std::signal(SIGPIPE, SIG_IGN);  // a process that has ended is told by `write`
  Pipe input;
  Pipe output;
  Pipe failure;
  const base::FileDescriptor errors(
      open(folder_.path("stderr").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  auto texts = lines(environment);
  std::vector<char*> variables;
  for (auto& text : texts) variables.push_back(text.data());
  variables.push_back(nullptr);
  std::string name = program;
  const std::array<char*, 2> arguments{name.data(), nullptr};
  const pid_t parent = getpid();

  process_ = fork();
  if (process_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(127);
    std::signal(SIGPIPE, SIG_DFL);
    dup2(input.reading.get(), STDIN_FILENO);
    dup2(output.writing.get(), STDOUT_FILENO);
    dup2(errors.get(), STDERR_FILENO);
    execve(arguments[0], arguments.data(), variables.data());
    [[maybe_unused]] const auto told = ::write(failure.writing.get(), "x", 1);
    _exit(127);
  }
  if (process_ < 0) throw std::runtime_error("cannot fork");
  processDescriptor_.reset(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
  failure.writing.reset();
  char failed = 0;
  if (read(failure.reading.get(), &failed, 1) != 0) {
    waitpid(process_, nullptr, 0);
    process_ = -1;
    throw std::runtime_error("cannot start " + program);
  }
  input_ = std::move(input.writing);
  output_ = std::move(output.reading);
  fcntl(input_.get(), F_SETFL, O_NONBLOCK);
}

ExtensionUnderTest::~ExtensionUnderTest() {
  if (process_ < 0 || status_) return;
  kill();
  exitStatus();
}

void ExtensionUnderTest::kill() { ::kill(process_, SIGKILL); }

bool ExtensionUnderTest::write(std::string_view bytes) {
  const auto end = Clock::now() + longPatience;
  while (!bytes.empty()) {
    const ssize_t count = ::write(input_.get(), bytes.data(), std::min<std::size_t>(bytes.size(), 1 << 20));
    if (count > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
      continue;
    }
    if (errno != EAGAIN && errno != EINTR) return false;
    if (Clock::now() >= end) return false;
    std::array<pollfd, 2> polled{{{input_.get(), POLLOUT, 0}, {outputEnded_ ? -1 : output_.get(), POLLIN, 0}}};
    poll(polled.data(), polled.size(), millisecondsUntil(end));
    if (polled[1].revents != 0) readSome(0);
  }
  return true;
}

// False when the time is over or the output has ended.
bool ExtensionUnderTest::readSome(int timeoutMilliseconds) {
  pollfd polled{output_.get(), POLLIN, 0};
  const int ready = poll(&polled, 1, timeoutMilliseconds);
  if (ready < 0) return errno == EINTR;
  if (ready == 0) return false;
  std::array<char, 65536> buffer;
  const ssize_t count = read(output_.get(), buffer.data(), buffer.size());
  if (count > 0) unread_.append(buffer.data(), static_cast<std::size_t>(count));
  outputEnded_ = count == 0;
  return count > 0;
}

std::optional<std::string> ExtensionUnderTest::line(Duration patience) {
  const auto end = Clock::now() + patience;
  while (true) {
    if (const auto length = unread_.find('\n'); length != std::string::npos) {
      std::string result = unread_.substr(0, length);
      unread_.erase(0, length + 1);
      return result;
    }
    if (outputEnded_ || !readSome(millisecondsUntil(end))) return std::nullopt;
  }
}

json ExtensionUnderTest::answer(Duration patience) {
  const auto text = line(patience);
  if (!text) return nullptr;
  json result = json::parse(*text, nullptr, false);
  return result.is_discarded() ? json(nullptr) : result;
}

int ExtensionUnderTest::ask(const std::string& method, const json& params) {
  json request{{"jsonrpc", "2.0"}, {"id", ++lastId_}, {"method", method}};
  if (!params.is_null()) request["params"] = params;
  writeLine(request.dump());
  return lastId_;
}

json ExtensionUnderTest::answerTo(int id, Duration patience) {
  const auto end = Clock::now() + patience;
  while (!kept_.contains(id)) {
    json next = answer(end - Clock::now());
    if (next.is_null()) return next;
    const int number = next["id"].is_number() ? next["id"].get<int>() : -1;
    kept_.insert_or_assign(number, std::move(next));
  }
  return std::move(kept_.extract(id).mapped());
}

json ExtensionUnderTest::call(const std::string& method, const json& params) { return answerTo(ask(method, params)); }

std::optional<int> ExtensionUnderTest::exitStatus(Duration patience) {
  if (status_) return status_;
  const auto end = Clock::now() + patience;
  pollfd polled{processDescriptor_.get(), POLLIN, 0};
  while (poll(&polled, 1, millisecondsUntil(end)) < 0 && errno == EINTR) {
  }
  int status = 0;
  if (waitpid(process_, &status, WNOHANG) != process_) return std::nullopt;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

std::string ExtensionUnderTest::diagnostics() const { return contentOf(folder_.path("stderr")); }

}  // namespace support
