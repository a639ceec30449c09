// The monitors of the display as placement knows them: what they are, and what panels leave of them.
#pragma once

#include <vector>

#include <gdk/gdk.h>

#include "desktop/placement/monitor.hpp"
#include "desktop/windows/display_way.hpp"

namespace desktop {

struct DisplayedMonitor {
  Monitor monitor;
  GdkMonitor* handle = nullptr;  ///< the display's, valid until its monitors change
};

/// In the display's order. What a display server does not tell of a monitor stays empty: X11 tells of it by the EDID
/// (VESA E-EDID 1.4, section 3), Wayland by its description.
std::vector<DisplayedMonitor> displayedMonitors(DisplayWay way);

}  // namespace desktop
