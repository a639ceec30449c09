// Where a widget goes when a person drags it or moves it by the keyboard.
#pragma once

#include <span>

#include "desktop/placement/geometry.hpp"

namespace desktop {

/// A dragged widget snaps to edges that are nearer than this, in points.
inline constexpr int pull = 12;

/// The origin of a widget that is dragged to `wanted`; the widget is always within the area. The axes are independent.
/// Along each, the widget snaps to the nearest of these, if one is within `pull`: the area's edges, a gap within them,
/// other widgets' edges, a gap beside them. Otherwise it snaps to the grid, which begins a gap from the area's top left
/// corner. Visible edges go before the grid, since nobody sees the grid.
///
///     area 1280x800, no other widgets: wanted at {27, 96}  ->  {20, 100}: a gap from the left edge, and the grid
Point snappedOrigin(const Rect& wanted, std::span<const Rect> others, const Rect& area);

enum class Snapping { on, off };

enum class Direction { left, right, up, down };

/// The origin after one step of the grid in this direction, within the area.
Point steppedOrigin(const Rect& rect, Direction direction, const Rect& area);

}  // namespace desktop
