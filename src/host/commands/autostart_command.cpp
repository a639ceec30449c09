#include <cstdlib>
#include <string>

#include "base/files/user_folders.hpp"
#include "host/autostart/autostart.hpp"
#include "host/command_line/outcome.hpp"
#include "host/command_line/programs.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"

namespace host {
namespace {

std::string sentence(const std::optional<AutostartStatus>& status) {
  if (!status) return "off\n";
  const bool unit = status->means == StartMeans::systemdUnit;
  std::string text = unit ? "on: systemd user unit " : "on: XDG autostart file ";
  text += status->file.string();
  if (!status->programThere)
    text += ", but " + status->program.string() + " is gone; run \"vamba-host autostart on\" again";
  return text + "\n";
}

}  // namespace

CommandResult autostart(const CommandLine& line) {
  const auto failure = [](const std::string& why) {
    return std::unexpected(CommandFailure{exit_status::noAnswer, why});
  };
  const auto folder = base::userConfigFolder(std::getenv);
  if (!folder) return failure("neither XDG_CONFIG_HOME nor HOME names a folder");
  Systemd systemd;
  Autostart autostart(*folder, systemd);
  std::optional<AutostartStatus> now;
  if (line.autostart == AutostartAction::on) {
    const auto on = autostart.on(programPath());
    if (!on) return failure(on.error());
    now = *on;
  } else if (line.autostart == AutostartAction::off) {
    if (const auto off = autostart.off(); !off) return failure(off.error());
  } else {
    const auto status = autostart.status();
    if (!status) return failure(status.error());
    now = *status;
  }
  if (const auto written = writeStandardOutput(sentence(now)); !written) return failure(written.error());
  if (line.autostart == AutostartAction::status && !now) return CommandDone{exit_status::off};
  return {};
}

}  // namespace host
