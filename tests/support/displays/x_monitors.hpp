// Monitors of an X server that can be plugged and unplugged: the outputs of Xorg's dummy driver, DUMMY0 to DUMMY15.
// (The virtual monitors that any server has would not do: GTK 3 knows a monitor by its output, and they have none.)
// Needs the package x11-xserver-utils.
#pragma once

#include <string>
#include <vector>

#include "support/displays/geometry.hpp"
#include "support/displays/x_connection.hpp"

namespace support {

struct XMonitor {
  std::string name;
  ScreenArea area;
  bool primary = false;
  bool operator==(const XMonitor&) const = default;
};

/// The numbers of a modeline for xorg.conf(5) and xrandr(1).
std::vector<std::string> timingsOf(int width, int height);

class XMonitors {
 public:
  XMonitors(const XConnection& connection, std::string display, std::string logFile);

  std::vector<XMonitor> all() const;

  /// Plugs a monitor at one of the outputs that have none. Both return when it is done, and throw std::runtime_error
  /// where it is not, as on a server of fixed monitors.
  void add(const XMonitor& monitor);
  void remove(const std::string& name);

 private:
  void look() const;
  void run(std::vector<std::string> arguments);

  const XConnection& connection_;
  std::string display_;
  std::string logFile_;
  int modes_ = 0;
};

}  // namespace support
