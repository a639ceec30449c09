// Points, sizes and rectangles on the desktop in whole logical points, the unit in which window systems place windows.
// The origin is the desktop's, y grows downwards, and all monitors share one plane.
#pragma once

#include <algorithm>

namespace desktop {

struct Point {
  int x = 0;
  int y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  int width = 0;
  int height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  int right() const { return x + width; }
  int bottom() const { return y + height; }
  Point origin() const { return {x, y}; }
  Size size() const { return {width, height}; }
  bool operator==(const Rect&) const = default;
};

inline Rect rectAt(Point origin, Size size) { return {origin.x, origin.y, size.width, size.height}; }

/// Whether they share an area. Rectangles that only touch do not overlap.
inline bool overlap(const Rect& one, const Rect& other) {
  return one.x < other.right() && other.x < one.right() && one.y < other.bottom() && other.y < one.bottom();
}

inline bool contains(const Rect& outer, const Rect& inner) {
  return outer.x <= inner.x && outer.y <= inner.y && inner.right() <= outer.right() && inner.bottom() <= outer.bottom();
}

/// The rectangle, larger by this much on each side.
inline Rect grown(const Rect& rect, int by) {
  return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

/// The origin nearest to the wanted one at which the whole rectangle is within the area. Along an axis on which it is
/// too long for that, it begins where the area begins.
///
///     clampedOrigin({1200, 100, 240, 240}, {0, 0, 1280, 800})  ->  {1040, 100}
inline Point clampedOrigin(const Rect& wanted, const Rect& area) {
  const auto along = [](int start, int length, int areaStart, int areaLength) {
    return std::clamp(start, areaStart, areaStart + std::max(0, areaLength - length));
  };
  return {along(wanted.x, wanted.width, area.x, area.width), along(wanted.y, wanted.height, area.y, area.height)};
}

}  // namespace desktop
