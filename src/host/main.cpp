// `vamba-host`: the widget's host. Reads the command line, finds the extension, and turns a command's outcome into an
// exit status.
#include <csignal>
#include <cstdio>

#include "base/descriptors/standard_streams.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/desktop_program.hpp"
#include "host/commands/exit_status.hpp"
#include "host/commands/program_folder.hpp"

namespace {

host::CommandResult run(const host::CommandLine& line, char* const* argv) {
  const auto usual = [] { return host::displayReachable() ? host::Command::desktop : host::Command::show; };
  const auto command = line.command ? *line.command : usual();
  if (command == host::Command::desktop) return host::becomeDesktop(argv);
  if (command == host::Command::autostart) return host::autostart(line);
  host::ExtensionSettings settings{.program = line.extension.value_or(host::usualExtensionPath())};
  if (command == host::Command::watch) return host::watch(settings, line);
  host::ExtensionClient extension(settings);
  switch (command) {
    case host::Command::gallery:
      return host::gallery(extension, line);
    case host::Command::show:
      return host::show(extension, line);
    default:
      return host::printAnswer(extension, line);
  }
}

}  // namespace

int main(int argc, char** argv) {
  base::fillStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  const auto parsed = host::parseCommandLine(argc, argv);
  if (const auto* exit = std::get_if<host::Exit>(&parsed)) {
    std::fputs(exit->standardOutput.c_str(), stdout);
    std::fputs(exit->standardError.c_str(), stderr);
    return exit->status;
  }
  const auto result = run(std::get<host::CommandLine>(parsed), argv);
  if (result) return host::exit_status::shown;
  std::fprintf(stderr, "vamba-host: %s\n", result.error().message.c_str());
  return result.error().status;
}
