// Monitors of an X server as clients see them, plugged and unplugged by the RANDR extension's virtual monitors.
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

class XMonitors {
 public:
  XMonitors(const XConnection& connection, std::string display, std::string logFile);

  std::vector<XMonitor> all() const;

  /// A monitor of the same name is replaced. The first one takes the place of the server's own, `screen`, and with it
  /// the server's only output.
  /// Both return when it is done, and throw std::runtime_error where it is not.
  void add(const XMonitor& monitor);
  void remove(const std::string& name);

 private:
  void run(std::vector<std::string> arguments);

  const XConnection& connection_;
  std::string display_;
  std::string logFile_;
};

}  // namespace support
