// The monitors there are, and which of them a stored place means. A monitor's number and its order say nothing: both
// change with every plug.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "desktop/placement/geometry.hpp"

namespace desktop {

/// What is known of a monitor; what the display server does not tell is empty.
struct MonitorIdentity {
  std::string make;
  std::string model;
  std::string serial;
  std::string connector;  ///< "DP-1": where it is plugged in
  bool operator==(const MonitorIdentity&) const = default;
};

struct Monitor {
  MonitorIdentity identity;
  Rect area;  ///< what panels leave of it
  bool primary = false;
  bool operator==(const Monitor&) const = default;
};

/// The index of the monitor meant: of equal make, model and serial, wherever it is plugged in now; of several such (two
/// from one box may bear the same serial) the one at the same connector, else the first. Where either side knows no
/// serial, make, model and connector decide.
std::optional<std::size_t> findMonitor(const MonitorIdentity& wanted, std::span<const Monitor> monitors);

/// The primary monitor, else the first.
std::optional<std::size_t> primaryMonitor(std::span<const Monitor> monitors);

/// The monitor that shows most of the rectangle, else the one whose area is nearest to its middle.
std::optional<std::size_t> monitorUnder(const Rect& rect, std::span<const Monitor> monitors);

}  // namespace desktop
