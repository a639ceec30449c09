// Monitors, and how a stored place finds its monitor again. The number and the order of monitors can't identify one:
// both change when one is plugged in.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "desktop/placement/geometry.hpp"

namespace desktop {

/// What identifies a monitor. Parts that the display server does not provide are empty.
struct MonitorIdentity {
  std::string make;
  std::string model;
  std::string serial;
  std::string connector;  ///< where it is plugged in: "DP-1"
  bool operator==(const MonitorIdentity&) const = default;
};

struct Monitor {
  MonitorIdentity identity;
  Rect area;  ///< without the room that panels take
  bool primary = false;
  bool operator==(const Monitor&) const = default;
};

/// The index of the wanted monitor: the one of the same make, model and serial, whichever connector it is plugged into
/// now. If several match (some makers give all their monitors one serial), the one at the same connector, else the
/// first. If the serial is unknown on either side, make, model and connector must match.
///
///     wanted {"Acme", "P27", "A1", "DP-1"}, connected {"Acme", "P27", "A1", "DP-2"}  ->  found
///     wanted {"Acme", "P27", "",   "DP-1"}, connected {"Acme", "P27", "A1", "DP-2"}  ->  none
std::optional<std::size_t> findMonitor(const MonitorIdentity& wanted, std::span<const Monitor> monitors);

/// The primary monitor, else the first.
std::optional<std::size_t> primaryMonitor(std::span<const Monitor> monitors);

/// The monitor that shows most of the rectangle. If none shows any of it, the one nearest to its centre.
std::optional<std::size_t> monitorUnder(const Rect& rect, std::span<const Monitor> monitors);

}  // namespace desktop
