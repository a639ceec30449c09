#include "desktop/placement/place.hpp"

#include <cstdlib>

namespace desktop {
namespace {

Corner cornerAt(bool right, bool bottom) {
  if (bottom) return right ? Corner::bottomRight : Corner::bottomLeft;
  return right ? Corner::topRight : Corner::topLeft;
}

}  // namespace

Place placeOf(const Rect& rect, const Monitor& monitor) {
  const Rect& area = monitor.area;
  const Point start{rect.x - area.x, rect.y - area.y};
  const Point end{area.right() - rect.right(), area.bottom() - rect.bottom()};
  const bool right = std::abs(end.x) < std::abs(start.x);
  const bool bottom = std::abs(end.y) < std::abs(start.y);
  return {monitor.identity, cornerAt(right, bottom), {right ? end.x : start.x, bottom ? end.y : start.y}};
}

Point originOf(const Place& place, Size size, const Rect& area) {
  return {isRight(place.corner) ? area.right() - place.inset.x - size.width : area.x + place.inset.x,
          isBottom(place.corner) ? area.bottom() - place.inset.y - size.height : area.y + place.inset.y};
}

}  // namespace desktop
