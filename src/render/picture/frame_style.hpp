// How the board itself is cut out and set off, for every painter alike.
#pragma once

#include <algorithm>
#include <cmath>

namespace render {

/// The width in device pixels of the hairline just within the board's edge, at `pixels` device pixels a point.
inline double edgeWidth(double pixels) { return std::max(1.0, std::floor(pixels / 2)); }

}  // namespace render
