#include "host/autostart/service_manager.hpp"

#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

#include "host/programs/ask_program.hpp"

namespace host {
namespace {

/// Whether the manager's socket is there. Without it systemctl fails after a delay.
bool managerRuns() {
  const char* const folder = std::getenv("XDG_RUNTIME_DIR");
  return folder != nullptr && access((std::string(folder) + "/systemd/private").c_str(), F_OK) == 0;
}

/// Whether the command ends with status 0. A manager that hangs must not keep the caller.
bool succeeds(const char* program, const std::vector<std::string>& arguments) {
  return managerRuns() && askProgram(program, arguments, absl::Seconds(10)).has_value();
}

}  // namespace

bool Systemd::knowsGraphicalSession() {
  return succeeds("systemctl", {"--user", "--quiet", "is-active", "graphical-session.target"});
}

bool Systemd::canTakeCapabilitiesAway() {
  // A service of this type has started only once its program runs, restrictions included.
  return succeeds("systemd-run", {"--user", "--quiet", "--collect", "--service-type=exec",
                                  "--property=PrivateUsers=yes", "--property=CapabilityBoundingSet=", "true"});
}

void Systemd::reload() { succeeds("systemctl", {"--user", "--quiet", "daemon-reload"}); }

}  // namespace host
