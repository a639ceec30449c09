#include "desktop/windows/previous_focus.hpp"

#include <memory>
#include <utility>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <gdk/gdkx.h>

#include "desktop/windows/gobject.hpp"

namespace desktop {
namespace {

struct FreeProperty {
  void operator()(void* memory) const { XFree(memory); }
};

Window activeWindow() {
  Display* const display = gdk_x11_get_default_xdisplay();
  Atom type = None;
  int format = 0;
  unsigned long length = 0;
  unsigned long left = 0;
  unsigned char* bytes = nullptr;
  XGetWindowProperty(display, gdk_x11_get_default_root_xwindow(),
                     gdk_x11_get_xatom_by_name("_NET_ACTIVE_WINDOW"), 0, 1, False, XA_WINDOW, &type, &format, &length,
                     &left, &bytes);
  const std::unique_ptr<unsigned char, FreeProperty> owned(bytes);
  constexpr int longs = 32;  // which the library gives as values of type long
  if (bytes == nullptr || type != XA_WINDOW || format != longs || length != 1) return None;
  return *reinterpret_cast<const unsigned long*>(bytes);
}

}  // namespace

void PreviousFocus::remember() {
  if (way_ == DisplayWay::x11) window_ = activeWindow();
}

void PreviousFocus::restore() {
  const Window window = std::exchange(window_, None);
  if (window == None) return;
  GdkDisplay* const display = gdk_display_get_default();
  // None if it has been closed.
  const OwnedObject<GdkWindow> known(gdk_x11_window_foreign_new_for_display(display, window));
  if (!known) return;
  GdkWindow* const root = gdk_screen_get_root_window(gdk_screen_get_default());
  gdk_window_focus(known.get(), gdk_x11_get_server_time(root));
}

}  // namespace desktop
