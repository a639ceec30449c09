// Where there is room for one more widget beside those that lie in an area already.
#pragma once

#include <optional>
#include <span>

#include "desktop/placement/geometry.hpp"

namespace desktop {

/// For a widget that is new: at the top right, else the first free place of the grid downwards, then column by column
/// leftwards, a gap away from the others and from the area's edges. Where no such place is left: any free one, then a
/// cascade over the others.
Point spotForNew(Size size, std::span<const Rect> others, const Rect& area);

/// For a widget that can't be where it was: the wanted place clamped to the area, else the nearest one that is free,
/// with a gap to the others if possible. None where there is no room without covering another one.
std::optional<Point> nearestFreeSpot(const Rect& wanted, std::span<const Rect> others, const Rect& area);

}  // namespace desktop
