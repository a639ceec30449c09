// What `main` of each of the host's programs does: they share one command line and one way to end.
#pragma once

#include <absl/functional/function_ref.h>

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"

namespace host {

/// Reads the command line, runs the command, says on standard error why it failed, and gives the exit status.
int runProgram(int argc, char** argv, absl::FunctionRef<CommandResult(const CommandLine&)> command);

}  // namespace host
