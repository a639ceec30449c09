// KWin's "show desktop" on Wayland. It raises its desktop window above everything, layers at the bottom included, and
// tells of it on the session bus only. On X11 boards are docks, which every window manager keeps visible by itself.
#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

#include "desktop/glib/session_bus.hpp"

namespace desktop {

class ShownDesktop {
 public:
  /// Begins to listen, without blocking. `changed` is called with whether the desktop is shown, never from within the
  /// constructor; nothing is asked again and again.
  ShownDesktop(const std::string& busAddress, std::function<void(bool)> changed);
  ShownDesktop(const ShownDesktop&) = delete;
  ShownDesktop& operator=(const ShownDesktop&) = delete;

 private:
  void listen();
  static void told(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
                   const char* signal, GVariant* parameters, gpointer self) noexcept;

  std::function<void(bool)> changed_;
  PrivateBus bus_;
};

}  // namespace desktop
