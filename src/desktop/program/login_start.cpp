#include "desktop/program/login_start.hpp"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "base/files/user_folders.hpp"
#include "host/autostart/autostart.hpp"
#include "host/command_line/programs.hpp"

namespace desktop {
namespace {

std::optional<std::filesystem::path> configFolder() { return base::userConfigFolder(std::getenv); }

}  // namespace

bool LoginStart::isOn() const {
  const auto folder = configFolder();
  if (!folder) return false;
  host::Systemd systemd;
  const auto status = host::Autostart(*folder, systemd).status();
  return status && *status;
}

void LoginStart::set(bool on) {
  const auto folder = configFolder();
  if (!folder)
    return messages_.say("neither XDG_CONFIG_HOME nor HOME names a folder, so the widgets can't start at login");
  // Waits for a change that is under way.
  change_ = std::jthread([folder = *folder, on, &messages = messages_] {
    host::Systemd systemd;
    host::Autostart autostart(folder, systemd);
    if (on) {
      if (const auto done = autostart.on(host::hostProgram()); !done) messages.say(done.error());
    } else {
      if (const auto done = autostart.off(); !done) messages.say(done.error());
    }
  });
}

}  // namespace desktop
