// The desktop's program from its command line to its end.
#pragma once

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"

namespace desktop {

/// Until it is told to quit. A session that has a desktop already shows that one's gallery.
host::CommandResult run(const host::CommandLine& line);

}  // namespace desktop
