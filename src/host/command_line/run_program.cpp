#include "host/command_line/run_program.hpp"

#include <csignal>
#include <cstdio>
#include <new>
#include <system_error>

#include "base/descriptors/standard_streams.hpp"
#include "base/descriptors/uncaught_exception.hpp"
#include "host/diagnostics/diagnostics.hpp"

namespace host {

namespace {

CommandResult run(const CommandLine& line, absl::FunctionRef<CommandResult(const CommandLine&)> command) {
  try {
    return command(line);
  } catch (const std::system_error& error) {
    return std::unexpected(CommandFailure{exit_status::noAnswer, error.code().message()});
  }
}

int runToTheEnd(int argc, char** argv, absl::FunctionRef<CommandResult(const CommandLine&)> command) {
  const auto parsed = parseCommandLine(argc, argv);
  if (const auto* exit = std::get_if<Exit>(&parsed)) {
    std::fputs(exit->standardOutput.c_str(), stdout);
    std::fputs(exit->standardError.c_str(), stderr);
    return exit->status;
  }
  const auto result = run(std::get<CommandLine>(parsed), command);
  if (result) return result->status;
  say(Priority::error, result.error().message);
  return result.error().status;
}

}  // namespace

int runProgram(int argc, char** argv, absl::FunctionRef<CommandResult(const CommandLine&)> command) {
  base::endProcessOnUncaughtException("vamba-host");
  base::fillStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  // Whoever started this program may have ignored it, and then the status of an ended child is lost (wait(2)).
  std::signal(SIGCHLD, SIG_DFL);
  // A limit on memory or threads (setrlimit(2)) is met with a sentence as any other failure is.
  try {
    return runToTheEnd(argc, argv, command);
  } catch (const std::bad_alloc&) {
    say(Priority::error, "there is not enough memory");
    return exit_status::noAnswer;
  }
}

}  // namespace host
