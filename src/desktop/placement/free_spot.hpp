// Finds room for one more widget beside those that are in an area already.
#pragma once

#include <optional>
#include <span>

#include "desktop/placement/geometry.hpp"

namespace desktop {

/// The place of a new widget: the first free one of the grid, searched from the top right downwards and then column by
/// column to the left, with a gap to the other widgets and to the area's edges. If there is none, any free place; if
/// there is none either, a cascade over the others.
Point spotForNew(Size size, std::span<const Rect> others, const Rect& area);

/// The free place nearest to the wanted one within the area, with a gap to the other widgets if possible. None if every
/// place covers another widget.
std::optional<Point> nearestFreeSpot(const Rect& wanted, std::span<const Rect> others, const Rect& area);

}  // namespace desktop
