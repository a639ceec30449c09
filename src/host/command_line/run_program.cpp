#include "host/command_line/run_program.hpp"

#include <csignal>
#include <cstdio>

#include "base/descriptors/standard_streams.hpp"

namespace host {

int runProgram(int argc, char** argv, absl::FunctionRef<CommandResult(const CommandLine&)> command) {
  base::fillStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  const auto parsed = parseCommandLine(argc, argv);
  if (const auto* exit = std::get_if<Exit>(&parsed)) {
    std::fputs(exit->standardOutput.c_str(), stdout);
    std::fputs(exit->standardError.c_str(), stderr);
    return exit->status;
  }
  const auto result = command(std::get<CommandLine>(parsed));
  if (result) return exit_status::shown;
  std::fprintf(stderr, "vamba-host: %s\n", result.error().message.c_str());
  return result.error().status;
}

}  // namespace host
