// The window that had the focus before the boards took it, on X11. Wayland compositors give the focus back by
// themselves.
#pragma once

#include "desktop/windows/display_way.hpp"

namespace desktop {

class PreviousFocus {
 public:
  explicit PreviousFocus(DisplayWay way) : way_(way) {}

  /// Remembers the active window, as the window manager reports it (EWMH, _NET_ACTIVE_WINDOW).
  void remember();
  /// Activates the remembered window again, if there was one, and forgets it.
  void restore();

 private:
  DisplayWay way_;
  unsigned long window_ = 0;
};

}  // namespace desktop
