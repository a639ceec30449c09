// Sizes and rectangles in points, with the origin at the top left and y growing downwards, and their conversion to
// device pixels. Only painters round to pixels, edge by edge, so that adjacent rectangles share an edge.
#pragma once

#include <algorithm>
#include <cmath>

namespace render {

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
  bool operator==(const Rect&) const = default;
};

/// `rect` in device pixels, at `pixels` device pixels a point, with each edge rounded to the nearest pixel.
inline Rect snapped(const Rect& rect, double pixels) {
  const double left = std::round(rect.x * pixels);
  const double top = std::round(rect.y * pixels);
  return {left, top, std::round(rect.right() * pixels) - left, std::round(rect.bottom() * pixels) - top};
}

/// As `snapped`, for a rule: its thickness is at least one device pixel and does not depend on its position.
inline Rect snappedRule(const Rect& rule, double pixels) {
  Rect device = snapped(rule, pixels);
  double& thin = rule.width < rule.height ? device.width : device.height;
  thin = std::max(1.0, std::floor(std::min(rule.width, rule.height) * pixels + 1e-9));
  return device;
}

}  // namespace render
