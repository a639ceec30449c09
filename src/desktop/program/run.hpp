// The main routine of the desktop's program.
#pragma once

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"

namespace desktop {

/// Returns when the person or the session ends it. If the session has a desktop already, opens that one's gallery or,
/// with
/// `--focus`, brings its boards to the front, and returns at once.
host::CommandResult run(const host::CommandLine& line);

}  // namespace desktop
