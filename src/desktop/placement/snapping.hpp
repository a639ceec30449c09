// How a widget finds its place under the hand that moves it: while it is dragged, and by the keyboard.
#pragma once

#include <span>

#include "desktop/placement/geometry.hpp"

namespace desktop {

/// How near an edge has to be to draw a dragged widget to itself, in points.
inline constexpr int pull = 12;

/// Where a widget dragged to `wanted` comes to lie, wholly within the area. Each axis for itself: the nearest of the
/// area's edges, places a gap within them, other widgets' edges and places a gap beside them, if one is within the
/// pull; else the nearest line of the grid, which starts a gap within the area's top left corner. What a person can see
/// goes before the grid, which nobody sees.
Point snappedOrigin(const Rect& wanted, std::span<const Rect> others, const Rect& area);

enum class Direction { left, right, up, down };

/// A step of the grid onwards, as far as the area goes.
Point steppedOrigin(const Rect& rect, Direction direction, const Rect& area);

}  // namespace desktop
