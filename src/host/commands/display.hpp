// Whether there is a display to show the desktop's windows on.
#pragma once

namespace host {

/// Whether a display server answers at the address that the environment names (`WAYLAND_DISPLAY`, `DISPLAY`).
bool displayReachable();

}  // namespace host
