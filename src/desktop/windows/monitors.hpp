// The monitors of the display: their identities and the areas that panels leave free.
#pragma once

#include <functional>
#include <vector>

#include <gdk/gdk.h>

#include "desktop/glib/gobject.hpp"
#include "desktop/placement/monitor.hpp"
#include "desktop/windows/display_way.hpp"

namespace desktop {

struct DisplayedMonitor {
  Monitor monitor;
  OwnedObject<GdkMonitor> handle;  ///< a reference, since windows are placed anew only some time after an unplug
};

/// The monitors in the display's order. X11 identifies a monitor by its EDID (VESA E-EDID 1.4, section 3), Wayland by
/// its description. Parts of the identity that the display server does not provide are empty.
std::vector<DisplayedMonitor> displayedMonitors(DisplayWay way);

/// Calls `changed` when monitors are added or removed or change their size, place or scale. One change may cause
/// several calls, the first ones before all of the change is known.
class MonitorChanges {
 public:
  explicit MonitorChanges(std::function<void()> changed);
  ~MonitorChanges();
  MonitorChanges(const MonitorChanges&) = delete;
  MonitorChanges& operator=(const MonitorChanges&) = delete;

 private:
  void monitorAdded(GdkMonitor* monitor);
  void monitorRemoved(GdkMonitor* monitor);
  void monitorChanged(GParamSpec* property);
  void screenChanged();
  void follow(GdkMonitor* monitor);

  std::function<void()> changed_;
};

}  // namespace desktop
