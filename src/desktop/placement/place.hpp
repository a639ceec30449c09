// A place that stays valid when the desktop changes: on a monitor by its identity, measured from the nearest corner. A
// widget at the top right stays at the top right at any resolution.
#pragma once

#include "desktop/placement/monitor.hpp"

namespace desktop {

enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

constexpr bool isRight(Corner corner) { return corner == Corner::topRight || corner == Corner::bottomRight; }
constexpr bool isBottom(Corner corner) { return corner == Corner::bottomLeft || corner == Corner::bottomRight; }

struct Place {
  MonitorIdentity monitor;
  Corner corner = Corner::topLeft;
  /// From that corner of the monitor's usable area inwards to the same corner of the widget, in points. Negative if the
  /// widget reached beyond the area.
  Point inset;
  bool operator==(const Place&) const = default;
};

/// The place of a widget that is at `rect` now. If corners are equally near, a left one wins over a right one and an
/// upper one over a lower one.
///
///     a board at {1020, 20, 240, 240} on a monitor of 1280x800  ->  Corner::topRight, inset {20, 20}
Place placeOf(const Rect& rect, const Monitor& monitor);

/// The origin of a widget of this size at the place. It is not clamped to the area.
Point originOf(const Place& place, Size size, const Rect& area);

}  // namespace desktop
