#include "host/extension/extension_process.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace host {
namespace {

// The child moves its ends of the pipes to the numbers 0 to 3. Ends that begin at 10 or above are not overwritten on
// the way, even where the host itself was started with its streams closed.
constexpr int firstSafeNumber = 10;

struct Pipe {
  base::FileDescriptor reading;
  base::FileDescriptor writing;
};

std::optional<Pipe> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const Pipe low{.reading = base::FileDescriptor(ends[0]), .writing = base::FileDescriptor(ends[1])};
  Pipe pipe{.reading = base::FileDescriptor(::fcntl(low.reading.get(), F_DUPFD_CLOEXEC, firstSafeNumber)),
            .writing = base::FileDescriptor(::fcntl(low.writing.get(), F_DUPFD_CLOEXEC, firstSafeNumber))};
  if (!pipe.reading.isOpen() || !pipe.writing.isOpen()) return std::nullopt;
  return pipe;
}

bool makeNonBlocking(const base::FileDescriptor& descriptor) {
  return ::fcntl(descriptor.get(), F_SETFL, O_NONBLOCK) == 0;
}

// glibc 2.36 declares its wrapper for C alone.
base::FileDescriptor openIdentity(pid_t process) {
  const base::FileDescriptor low(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  return base::FileDescriptor(low.isOpen() ? ::fcntl(low.get(), F_DUPFD_CLOEXEC, firstSafeNumber) : -1);
}

/// The environment of this process with these variables ("NAME=VALUE") in place of its own of the same names. The
/// result points into both.
std::vector<char*> environmentWith(const std::vector<std::string>& variables) {
  const auto replaced = [&](std::string_view known) {
    const auto name = known.substr(0, known.find('=') + 1);
    return std::ranges::any_of(variables, [&](const std::string& variable) { return variable.starts_with(name); });
  };
  std::vector<char*> result;
  for (char** known = environ; known != nullptr && *known != nullptr; ++known) {
    if (!replaced(*known)) result.push_back(*known);
  }
  for (const auto& variable : variables) result.push_back(const_cast<char*>(variable.c_str()));
  result.push_back(nullptr);
  return result;
}

struct ChildEnds {
  int input;
  int output;
  int diagnostics;
  int startError;
};

// Runs between fork and exec: nothing here may allocate or lock. Returns only on failure, with errno set.
void becomeExtension(const char* program, char* const* environment, const ChildEnds& ends, pid_t parent) {
  constexpr int startErrorNumber = 3;
  if (::setpgid(0, 0) != 0) return;
  if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0) return;
  // The parent may have ended before the line above.
  if (::getppid() != parent) ::_exit(1);
  if (::dup2(ends.input, STDIN_FILENO) < 0 || ::dup2(ends.output, STDOUT_FILENO) < 0 ||
      ::dup2(ends.diagnostics, STDERR_FILENO) < 0) {
    return;
  }
  if (::dup3(ends.startError, startErrorNumber, O_CLOEXEC) < 0) return;
  if (::close_range(startErrorNumber + 1, ~0U, 0) != 0) return;

  // An ignored signal stays ignored through exec; the extension is to end when its reader leaves.
  std::signal(SIGPIPE, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);

  std::array<char*, 2> arguments{const_cast<char*>(program), nullptr};
  ::execve(program, arguments.data(), environment);
}

[[noreturn]] void runChild(const char* program, char* const* environment, const ChildEnds& ends, pid_t parent) {
  becomeExtension(program, environment, ends, parent);
  const int error = errno;
  // The pipe is number 3 once the ends are in place, and has its own number before: exactly one of the writes succeeds.
  if (::write(ends.startError, &error, sizeof error) < 0) {
    [[maybe_unused]] const ssize_t ignored = ::write(3, &error, sizeof error);
  }
  ::_exit(127);
}

// The errno that kept the program from starting; the end of input tells that it did start.
int readStartError(int descriptor) {
  int error = 0;
  ssize_t count = 0;
  do {
    count = ::read(descriptor, &error, sizeof error);
  } while (count < 0 && errno == EINTR);
  return count == sizeof error ? error : 0;
}

std::string describeEnd(const siginfo_t& info) {
  if (info.si_code == CLD_EXITED) return "ended with status " + std::to_string(info.si_status);
  return "was ended by signal " + std::to_string(info.si_status);
}

}  // namespace

std::expected<ExtensionProcess, std::string> ExtensionProcess::start(const std::filesystem::path& program,
                                                                     const std::vector<std::string>& environment) {
  const auto failure = [&](int error) {
    return std::unexpected("the extension " + program.string() +
                           " could not be started: " + std::generic_category().message(error));
  };
  auto input = makePipe();
  auto output = makePipe();
  auto diagnostics = makePipe();
  auto startError = makePipe();
  if (!input || !output || !diagnostics || !startError) return failure(errno);
  if (!makeNonBlocking(input->writing) || !makeNonBlocking(output->reading) || !makeNonBlocking(diagnostics->reading)) {
    return failure(errno);
  }

  const std::string path = program.string();
  const std::vector<char*> variables = environmentWith(environment);
  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child < 0) return failure(errno);
  if (child == 0) {
    runChild(path.c_str(), variables.data(),
             {.input = input->reading.get(),
              .output = output->writing.get(),
              .diagnostics = diagnostics->writing.get(),
              .startError = startError->writing.get()},
             parent);
  }

  ExtensionProcess process;
  process.id_ = child;
  process.identity_ = openIdentity(child);
  const int identityError = errno;
  startError->writing.reset();
  if (const int error = readStartError(startError->reading.get()); error != 0) {
    ::waitpid(child, nullptr, 0);
    process.identity_.reset();
    return failure(error);
  }
  if (!process.identity_.isOpen()) {
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    return failure(identityError);
  }
  process.input_ = std::move(input->writing);
  process.output_ = std::move(output->reading);
  process.diagnostics_ = std::move(diagnostics->reading);
  return process;
}

ExtensionProcess::~ExtensionProcess() { end(); }

bool ExtensionProcess::ended() const {
  pollfd entry{.fd = identity_.get(), .events = POLLIN, .revents = 0};
  return !identity_.isOpen() || ::poll(&entry, 1, 0) == 1;
}

std::string ExtensionProcess::end() {
  if (!identity_.isOpen()) return "had ended";
  // Before the process is waited for: until then its number, and so the group's, belongs to nobody else.
  ::kill(-id_, SIGKILL);
  siginfo_t info{};
  while (::waitid(P_PIDFD, static_cast<id_t>(identity_.get()), &info, WEXITED) != 0 && errno == EINTR) {
  }
  identity_.reset();
  return describeEnd(info);
}

}  // namespace host
