// The monitors of the display as placement knows them: what they are, and what panels leave of them.
#pragma once

#include <functional>
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

/// Tells when monitors come, go, or change their size, place or scale: several times for one change, and some of them
/// before all of it is known.
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
