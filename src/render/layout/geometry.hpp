// Lengths in points, with the origin at the top left and y growing downwards; and the way to device pixels, which
// are rounded only when painting, edge by edge, so that neighbours share an edge.
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

/// The device pixels that `rect` covers at `pixels` device pixels a point: each edge goes to the nearest one.
inline Rect snapped(const Rect& rect, double pixels) {
  const double left = std::round(rect.x * pixels);
  const double top = std::round(rect.y * pixels);
  return {left, top, std::round(rect.right() * pixels) - left, std::round(rect.bottom() * pixels) - top};
}

/// As `snapped`, for a rule: its thinner side covers at least one device pixel and the same number wherever it lies.
inline Rect snappedRule(const Rect& rule, double pixels) {
  Rect device = snapped(rule, pixels);
  double& thin = rule.width < rule.height ? device.width : device.height;
  thin = std::max(1.0, std::floor(std::min(rule.width, rule.height) * pixels + 1e-9));
  return device;
}

}  // namespace render
