// `vamba-host`: the widget's host. It runs the commands that need no graphics itself and becomes another program for
// those that do.
#include "host/command_line/programs.hpp"
#include "host/command_line/run_program.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/display.hpp"

namespace {

using host::Command;

host::CommandResult run(const host::CommandLine& line, char* const* argv) {
  const auto usual = [] { return host::displayReachable() ? Command::desktop : Command::show; };
  const auto command = line.command ? *line.command : usual();
  if (command == Command::desktop) return host::become("vamba-desktop", argv);
  if (command == Command::show && host::isPicture(line.format)) return host::become("vamba-picture", argv);
  if (command == Command::autostart) return host::autostart(line);
  if (command == Command::signIn) return host::signIn(line);
  if (command == Command::signOut) return host::signOut(line);
  if (command == Command::doctor) return host::doctor(line);
  host::ExtensionSettings settings{.program = host::extensionProgram(line), .verbose = line.verbose};
  if (command == Command::watch) return host::watch(settings, line);
  host::ExtensionClient extension(settings);
  switch (command) {
    case Command::gallery:
      return host::gallery(extension, line);
    case Command::show:
      return host::show(extension, line, host::drawText);
    default:
      return host::printAnswer(extension, line);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return host::runProgram(argc, argv, [argv](const host::CommandLine& line) { return run(line, argv); });
}
