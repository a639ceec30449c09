// Rounded outlines whose corners begin to bend gently, as the cubic curves that every painter knows.
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

/// The four corners of a rectangle clockwise from the top left, to be joined by straight lines. The radius is that of
/// the circle that the corner's middle touches; it is at most half the shorter side, where the result is a capsule.
std::array<Corner, 4> continuousCorners(const Rect& rect, double radius);

}  // namespace render
