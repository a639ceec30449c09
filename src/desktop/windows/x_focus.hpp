// Giving the focus to windows on X11 when a person asks for it (EWMH, _NET_ACTIVE_WINDOW).
#pragma once

#include <gdk/gdk.h>

#include "desktop/windows/display_way.hpp"

namespace desktop {

/// Raises the window and gives it the focus. Window managers may refuse an application's request soon after a key press
/// in another window, so the request names a pager as its source (EWMH, source indication 2). `time` is the server's.
void focusOnX(GdkWindow* window, guint32 time);

/// The window that had the focus before the boards took it. Does nothing on Wayland, where compositors give the focus
/// back by themselves.
class PreviousFocus {
 public:
  explicit PreviousFocus(DisplayWay way) : way_(way) {}

  void remember();
  void forget() { window_ = 0; }
  /// Focuses the remembered window and forgets it. False if there was none. `time` is that of the event that caused it.
  bool restore(guint32 time);

 private:
  DisplayWay way_;
  unsigned long window_ = 0;
};

}  // namespace desktop
