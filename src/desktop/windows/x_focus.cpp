#include "desktop/windows/x_focus.hpp"

#include <memory>
#include <utility>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <gdk/gdkx.h>

#include "desktop/glib/gobject.hpp"

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
  XGetWindowProperty(display, gdk_x11_get_default_root_xwindow(), gdk_x11_get_xatom_by_name("_NET_ACTIVE_WINDOW"), 0, 1,
                     False, XA_WINDOW, &type, &format, &length, &left, &bytes);
  const std::unique_ptr<unsigned char, FreeProperty> owned(bytes);
  constexpr int longs = 32;  // which the library gives as values of type long
  if (bytes == nullptr || type != XA_WINDOW || format != longs || length != 1) return None;
  return *reinterpret_cast<const unsigned long*>(bytes);
}

}  // namespace

void focusOnX(GdkWindow* window, guint32 time) {
  if (gdk_x11_screen_supports_net_wm_hint(gdk_window_get_screen(window),
                                          gdk_atom_intern_static_string("_NET_ACTIVE_WINDOW")) == FALSE) {
    gdk_window_focus(window, time);
    return;
  }
  XEvent request{};
  request.xclient.type = ClientMessage;
  request.xclient.window = gdk_x11_window_get_xid(window);
  request.xclient.message_type = gdk_x11_get_xatom_by_name("_NET_ACTIVE_WINDOW");
  request.xclient.format = 32;
  constexpr long pager = 2;
  request.xclient.data.l[0] = pager;
  request.xclient.data.l[1] = static_cast<long>(time);
  gdk_window_raise(window);
  XSendEvent(gdk_x11_get_default_xdisplay(), gdk_x11_get_default_root_xwindow(), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &request);
}

void PreviousFocus::remember() {
  if (way_ == DisplayWay::x11) window_ = activeWindow();
}

bool PreviousFocus::restore(guint32 time) {
  const Window window = std::exchange(window_, None);
  if (window == None) return false;
  GdkDisplay* const display = gdk_display_get_default();
  // None if it has been closed.
  const OwnedObject<GdkWindow> known(gdk_x11_window_foreign_new_for_display(display, window));
  if (!known) return false;
  gdk_x11_display_error_trap_push(display);  // it may be closed meanwhile
  focusOnX(known.get(), time);
  gdk_x11_display_error_trap_pop_ignored(display);
  return true;
}

}  // namespace desktop
