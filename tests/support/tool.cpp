#include "support/tool.hpp"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/file_content.hpp"

namespace support {
namespace {

std::string requiredPathOf(const std::string& program, const std::string& package) {
  if (auto path = pathOf(program)) return *std::move(path);
  throw std::runtime_error("this test needs " + program + ": apt-get install " + package);
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> result;
  for (std::string& each : texts) result.push_back(each.data());
  result.push_back(nullptr);
  return result;
}

}  // namespace

std::optional<std::string> pathOf(const std::string& program) {
  const char* const path = std::getenv("PATH");
  std::istringstream folders(std::string(path == nullptr ? "" : path) + ":/usr/bin:/usr/sbin:/sbin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (std::string file = folder + "/" + program; access(file.c_str(), X_OK) == 0) return file;
  }
  return std::nullopt;
}

RunningTool::RunningTool(const std::string& program, const std::string& package, std::vector<std::string> arguments,
                         const std::string& outputFile, std::optional<int> inherited,
                         std::vector<std::string> extraEnvironment) {
  std::vector<std::string> words{requiredPathOf("setpriv", "util-linux"), "--pdeathsig", "TERM", "--",
                                 requiredPathOf(program, package)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  for (char** each = environ; *each != nullptr; ++each) extraEnvironment.emplace_back(*each);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  if (inherited) posix_spawn_file_actions_adddup2(&actions, *inherited, 3);
  const int error = posix_spawn(&process_, words[0].c_str(), &actions, nullptr, pointers(words).data(),
                                pointers(extraEnvironment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), "cannot start " + program);
}

RunningTool::~RunningTool() { end(); }

int RunningTool::wait() {
  if (process_ <= 0) return status_;
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

int RunningTool::end() {
  if (process_ > 0) kill(process_, SIGTERM);
  return wait();
}

void runTool(const std::string& program, const std::string& package, std::vector<std::string> arguments,
             const std::string& outputFile) {
  if (RunningTool(program, package, std::move(arguments), outputFile).wait() == 0) return;
  throw std::runtime_error(program + " failed: " + contentOf(outputFile));
}

}  // namespace support
