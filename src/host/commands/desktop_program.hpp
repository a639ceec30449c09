// The way from the host's command line to the desktop's program.
#pragma once

#include "host/commands/commands.hpp"

namespace host {

/// Whether a display server answers at the address that the environment names (`WAYLAND_DISPLAY`, `DISPLAY`).
bool displayReachable();

/// Becomes the desktop's program with the same arguments. Returns only when it can't.
CommandResult becomeDesktop(char* const* argv);

}  // namespace host
