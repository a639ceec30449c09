// Rounded rectangles with continuous corners, which begin to bend gradually, as cubic Bézier curves.
#pragma once

#include <array>

#include "render/layout/geometry.hpp"

namespace render {

struct Point {
  double x = 0;
  double y = 0;
};

/// A cubic curve.
struct Corner {
  Point start;
  Point firstControl;
  Point secondControl;
  Point end;
};

/// The four corners of a rectangle clockwise from the top left, to be joined by straight lines. The middle of each
/// corner touches a circle of this radius. The radius is limited to half the shorter side, which gives a capsule.
std::array<Corner, 4> continuousCorners(const Rect& rect, double radius);

}  // namespace render
