#include "host/autostart/service_manager.hpp"

#include <cerrno>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace host {
namespace {

/// Whether the manager's socket is there. Without it systemctl fails after a delay.
bool managerRuns() {
  const char* const folder = std::getenv("XDG_RUNTIME_DIR");
  return folder != nullptr && access((std::string(folder) + "/systemd/private").c_str(), F_OK) == 0;
}

/// Whether the command, which is looked up in PATH, ends with status 0. Its output is dropped.
bool succeeds(std::initializer_list<const char*> command) {
  if (!managerRuns()) return false;
  std::vector<std::string> words(command.begin(), command.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0) return false;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
  }
  pid_t process = -1;
  const bool started = posix_spawnp(&process, argv.front(), &actions, nullptr, argv.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  if (!started) return false;
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

bool Systemd::knowsGraphicalSession() {
  return succeeds({"systemctl", "--user", "--quiet", "is-active", "graphical-session.target"});
}

bool Systemd::canTakeCapabilitiesAway() {
  // A service of this type has started only once its program runs, restrictions included.
  return succeeds({"systemd-run", "--user", "--quiet", "--collect", "--service-type=exec",
                   "--property=PrivateUsers=yes", "--property=CapabilityBoundingSet=", "true"});
}

void Systemd::reload() { succeeds({"systemctl", "--user", "--quiet", "daemon-reload"}); }

}  // namespace host
