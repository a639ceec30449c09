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

#include "desktop/glib/gobject.hpp"
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
  gdk_x11_display_error_trap_push(display);  // the output may have been unplugged meanwhile
  XRRGetOutputProperty(connection, output, property, 0, words, False, False, AnyPropertyType, &type, &format, &length,
                       &left, &bytes);
  const bool failed = gdk_x11_display_error_trap_pop(display) != 0;
  const std::unique_ptr<unsigned char, FreeX> owned(bytes);
  if (failed || bytes == nullptr || type != XA_INTEGER || format != 8) return std::nullopt;
  return parseEdid({bytes, length});
}

MonitorIdentity identityOnX(GdkDisplay* display, GdkMonitor* monitor) {
  // On X11 the toolkit returns the connector as the model.
  MonitorIdentity identity{.connector = textOrEmpty(gdk_monitor_get_model(monitor))};
  if (const auto edid = edidOf(display, gdk_x11_monitor_get_output(monitor))) {
    identity.make = edid->make;
    identity.model = edid->model;
    identity.serial = edid->serial;
  }
  return identity;
}

/// `output` is what the compositor said about this monitor; null where that is unknown.
MonitorIdentity identityOnWayland(GdkMonitor* monitor, const WaylandOutput* output) {
  MonitorIdentity identity{.make = textOrEmpty(gdk_monitor_get_manufacturer(monitor)),
                           .model = textOrEmpty(gdk_monitor_get_model(monitor))};
  if (output == nullptr || output->make != identity.make || output->model != identity.model) return identity;
  identity.connector = output->name;
  identity.serial = serialOf(*output);
  return identity;
}

}  // namespace

std::vector<DisplayedMonitor> displayedMonitors(DisplayWay way) {
  GdkDisplay* const display = gdk_display_get_default();
  const bool onX = way == DisplayWay::x11;
  const auto count = static_cast<std::size_t>(gdk_display_get_n_monitors(display));
  // The toolkit keeps monitors in the order in which the compositor announces them, as `waylandOutputs` does.
  auto outputs = onX ? std::vector<WaylandOutput>() : waylandOutputs(gdk_wayland_display_get_wl_display(display));
  if (outputs.size() != count) outputs.clear();
  std::vector<DisplayedMonitor> all;
  for (std::size_t i = 0; i < count; ++i) {
    GdkMonitor* const handle = gdk_display_get_monitor(display, static_cast<int>(i));
    GdkRectangle area{};
    gdk_monitor_get_workarea(handle, &area);
    if (area.width <= 0 || area.height <= 0) continue;  // announced, but not yet described
    const auto identity =
        onX ? identityOnX(display, handle) : identityOnWayland(handle, outputs.empty() ? nullptr : &outputs[i]);
    all.push_back({.monitor = {.identity = identity,
                               .area = {area.x, area.y, area.width, area.height},
                               .primary = gdk_monitor_is_primary(handle) != FALSE},
                   .handle = OwnedObject<GdkMonitor>(GDK_MONITOR(g_object_ref(handle)))});
  }
  return all;
}

MonitorChanges::MonitorChanges(std::function<void()> changed) : changed_(std::move(changed)) {
  GdkDisplay* const display = gdk_display_get_default();
  connect<&MonitorChanges::monitorAdded>(display, "monitor-added", this);
  connect<&MonitorChanges::monitorRemoved>(display, "monitor-removed", this);
  GdkScreen* const screen = gdk_display_get_default_screen(display);
  connect<&MonitorChanges::screenChanged>(screen, "monitors-changed", this);
  connect<&MonitorChanges::screenChanged>(screen, "size-changed", this);
  for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) follow(gdk_display_get_monitor(display, i));
}

MonitorChanges::~MonitorChanges() {
  GdkDisplay* const display = gdk_display_get_default();
  g_signal_handlers_disconnect_by_data(display, this);
  g_signal_handlers_disconnect_by_data(gdk_display_get_default_screen(display), this);
  for (int i = 0; i < gdk_display_get_n_monitors(display); ++i) {
    g_signal_handlers_disconnect_by_data(gdk_display_get_monitor(display, i), this);
  }
}

void MonitorChanges::follow(GdkMonitor* monitor) {
  for (const char* signal : {"notify::geometry", "notify::workarea", "notify::scale-factor"}) {
    connect<&MonitorChanges::monitorChanged>(monitor, signal, this);
  }
}

void MonitorChanges::monitorAdded(GdkMonitor* monitor) {
  follow(monitor);
  changed_();
}

void MonitorChanges::monitorRemoved(GdkMonitor* monitor) {
  g_signal_handlers_disconnect_by_data(monitor, this);
  changed_();
}

void MonitorChanges::monitorChanged(GParamSpec* /*property*/) { changed_(); }

void MonitorChanges::screenChanged() { changed_(); }

}  // namespace desktop
