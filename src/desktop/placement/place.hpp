// A place that outlives changes of the desktop: on a monitor known by what it is, measured from the corner that is
// nearest, so that a widget at the top right is at the top right of any resolution.
#pragma once

#include "desktop/placement/monitor.hpp"

namespace desktop {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

constexpr bool isRight(Corner corner) { return corner == Corner::topRight || corner == Corner::bottomRight; }
constexpr bool isBottom(Corner corner) { return corner == Corner::bottomLeft || corner == Corner::bottomRight; }

struct Place {
  MonitorIdentity monitor;
  Corner corner = Corner::topLeft;
  /// From that corner of the monitor's usable area inwards to the same corner of the widget, in points. Negative where
  /// the widget stood out of the area.
  Point inset;
  bool operator==(const Place&) const = default;
};

/// The place of a widget that lies at `rect` now. Of corners equally near, the left and the upper ones.
Place placeOf(const Rect& rect, const Monitor& monitor);

/// Where the place is in this area; not clamped to it.
Point originOf(const Place& place, Size size, const Rect& area);

}  // namespace desktop
