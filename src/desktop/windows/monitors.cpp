#include "desktop/windows/monitors.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>
#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>

#include "desktop/windows/edid.hpp"
#include "desktop/windows/wayland_outputs.hpp"

namespace desktop {
namespace {

std::string textOrEmpty(const char* text) { return text == nullptr ? std::string() : std::string(text); }

struct FreeX {
  void operator()(void* memory) const { XFree(memory); }
};

std::optional<Edid> edidOf(GdkDisplay* display, XID output) {
  if (output == None) return std::nullopt;
  Display* const connection = gdk_x11_display_get_xdisplay(display);
  const Atom property = XInternAtom(connection, "EDID", True);
  if (property == None) return std::nullopt;
  Atom type = None;
  int format = 0;
  unsigned long length = 0;
  unsigned long left = 0;
  unsigned char* bytes = nullptr;
  constexpr long words = 128 / 4;
  gdk_x11_display_error_trap_push(display);  // it may be gone already
  XRRGetOutputProperty(connection, output, property, 0, words, False, False, AnyPropertyType, &type, &format, &length,
                       &left, &bytes);
  const bool failed = gdk_x11_display_error_trap_pop(display) != 0;
  const std::unique_ptr<unsigned char, FreeX> owned(bytes);
  if (failed || bytes == nullptr || type != XA_INTEGER || format != 8) return std::nullopt;
  return parseEdid({bytes, length});
}

MonitorIdentity identityOnX(GdkDisplay* display, GdkMonitor* monitor) {
  // The toolkit calls the connector a model there.
  MonitorIdentity identity{.connector = textOrEmpty(gdk_monitor_get_model(monitor))};
  if (const auto edid = edidOf(display, gdk_x11_monitor_get_output(monitor))) {
    identity.make = edid->make;
    identity.model = edid->model;
    identity.serial = edid->serial;
  }
  return identity;
}

MonitorIdentity identityOnWayland(GdkMonitor* monitor, const std::vector<WaylandOutput>& outputs) {
  MonitorIdentity identity{.make = textOrEmpty(gdk_monitor_get_manufacturer(monitor)),
                           .model = textOrEmpty(gdk_monitor_get_model(monitor))};
  GdkRectangle frame{};
  gdk_monitor_get_geometry(monitor, &frame);
  const auto same = std::ranges::find_if(outputs, [&](const WaylandOutput& output) {
    return output.make == identity.make && output.model == identity.model && output.x == frame.x && output.y == frame.y;
  });
  if (same == outputs.end()) return identity;
  identity.connector = same->name;
  identity.serial = serialOf(*same);
  return identity;
}

}  // namespace

std::vector<DisplayedMonitor> displayedMonitors(DisplayWay way) {
  GdkDisplay* const display = gdk_display_get_default();
  const bool onX = way == DisplayWay::x11;
  const auto outputs = onX ? std::vector<WaylandOutput>() : waylandOutputs(gdk_wayland_display_get_wl_display(display));
  std::vector<DisplayedMonitor> all;
  for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
    GdkMonitor* const handle = gdk_display_get_monitor(display, i);
    GdkRectangle area{};
    gdk_monitor_get_workarea(handle, &area);
    all.push_back({.monitor = {.identity = onX ? identityOnX(display, handle) : identityOnWayland(handle, outputs),
                               .area = {area.x, area.y, area.width, area.height},
                               .primary = gdk_monitor_is_primary(handle) != FALSE},
                   .handle = handle});
  }
  return all;
}

}  // namespace desktop
