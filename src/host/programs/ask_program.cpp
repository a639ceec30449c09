#include "host/programs/ask_program.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "base/tasks/deadline.hpp"

namespace host {
namespace {

constexpr std::size_t mostBytes = std::size_t{64} << 10;

struct Pipe {
  base::FileDescriptor reading;
  base::FileDescriptor writing;

  Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
    reading.reset(ends[0]);
    writing.reset(ends[1]);
  }
};

std::string withoutLineEnd(std::string text) {
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

/// What a failed program says on standard error last, without its name in front.
std::string lastLine(std::string text) {
  text = withoutLineEnd(std::move(text));
  if (const auto end = text.rfind('\n'); end != std::string::npos) text.erase(0, end + 1);
  constexpr std::string_view name = "vamba-host: ";
  return text.starts_with(name) ? text.substr(name.size()) : text;
}

/// Moves what is there; false at the end.
bool pump(base::FileDescriptor& from, std::string& to) {
  std::array<char, 4096> block;
  const ssize_t count = ::read(from.get(), block.data(), block.size());
  if (count < 0 && errno == EINTR) return true;
  if (count <= 0) return false;
  if (to.size() < mostBytes) to.append(block.data(), static_cast<std::size_t>(count));
  return true;
}

}  // namespace

std::expected<std::string, std::string> askProgram(const std::filesystem::path& program,
                                                   const std::vector<std::string>& arguments, absl::Duration patience) {
  std::string path = program.string();
  const auto notStarted = [&](int error) {
    return std::unexpected(path + " could not be started: " + std::generic_category().message(error));
  };
  Pipe output;
  Pipe errors;
  if (!output.writing.isOpen() || !errors.writing.isOpen()) return notStarted(EMFILE);
  std::vector<std::string> words = arguments;
  std::vector<char*> argv{path.data()};
  for (auto& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0) return notStarted(ENOMEM);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output.writing.get(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, errors.writing.get(), STDERR_FILENO);
  pid_t child = -1;
  const int error = posix_spawnp(&child, path.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return notStarted(error);
  output.writing.reset();
  errors.writing.reset();

  const auto deadline = base::Deadline::after(absl::ToChronoNanoseconds(patience));
  std::string answer;
  std::string complaint;
  while ((output.reading.isOpen() || errors.reading.isOpen()) && !deadline.passed()) {
    std::array<pollfd, 2> entries{pollfd{.fd = output.reading.get(), .events = POLLIN, .revents = 0},
                                  pollfd{.fd = errors.reading.get(), .events = POLLIN, .revents = 0}};
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline.left()).count();
    ::poll(entries.data(), entries.size(), static_cast<int>(left));
    if (entries[0].revents != 0 && !pump(output.reading, answer)) output.reading.reset();
    if (entries[1].revents != 0 && !pump(errors.reading, complaint)) errors.reading.reset();
  }
  const bool late = output.reading.isOpen() || errors.reading.isOpen();
  if (late) ::kill(child, SIGKILL);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (late) return std::unexpected(program.filename().string() + " did not answer in time");
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return withoutLineEnd(std::move(answer));
  const std::string said = lastLine(std::move(complaint));
  return std::unexpected(said.empty() ? program.filename().string() + " failed" : said);
}

}  // namespace host
