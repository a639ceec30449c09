// `vamba-desktop`: what `vamba-host desktop` becomes. It reads the same command line.
#include <csignal>
#include <cstdio>

#include "base/descriptors/standard_streams.hpp"
#include "desktop/program/run.hpp"
#include "host/commands/exit_status.hpp"

int main(int argc, char** argv) {
  base::fillStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  const auto parsed = host::parseCommandLine(argc, argv);
  if (const auto* exit = std::get_if<host::Exit>(&parsed)) {
    std::fputs(exit->standardOutput.c_str(), stdout);
    std::fputs(exit->standardError.c_str(), stderr);
    return exit->status;
  }
  const auto result = desktop::run(std::get<host::CommandLine>(parsed));
  if (result) return host::exit_status::shown;
  std::fprintf(stderr, "vamba-host: %s\n", result.error().message.c_str());
  return result.error().status;
}
