#include "desktop/placement/free_spot.hpp"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "desktop/placement/grid.hpp"

namespace desktop {
namespace {

bool isFree(const Rect& rect, std::span<const Rect> others, int distance) {
  const Rect needed = grown(rect, distance);
  return std::ranges::none_of(others, [&](const Rect& other) { return overlap(needed, other); });
}

std::int64_t squaredDistance(Point one, Point other) {
  const std::int64_t dx = std::int64_t{one.x} - other.x;
  const std::int64_t dy = std::int64_t{one.y} - other.y;
  return dx * dx + dy * dy;
}

struct Starts {
  std::vector<int> x;
  std::vector<int> y;
};

/// If there is a free place at all, there is one at a pair of these coordinates: a free rectangle that is pushed left
/// and up until it stops touches, on each axis, the area's edge or another rectangle. The far edges and the wanted
/// place are added so that a near place is found.
Starts candidateStarts(const Rect& wanted, std::span<const Rect> others, const Rect& area, int distance) {
  Starts starts{{area.x, area.right() - wanted.width, wanted.x}, {area.y, area.bottom() - wanted.height, wanted.y}};
  for (const Rect& other : others) {
    starts.x.insert(starts.x.end(), {other.right() + distance, other.x - distance - wanted.width});
    starts.y.insert(starts.y.end(), {other.bottom() + distance, other.y - distance - wanted.height});
  }
  for (auto* axis : {&starts.x, &starts.y}) {
    std::ranges::sort(*axis);
    axis->erase(std::ranges::unique(*axis).begin(), axis->end());
  }
  return starts;
}

std::optional<Point> nearestAtDistance(const Rect& wanted, std::span<const Rect> others, const Rect& area,
                                       int distance) {
  const Starts starts = candidateStarts(wanted, others, area, distance);
  std::optional<Point> nearest;
  for (const int y : starts.y) {
    for (const int x : starts.x) {
      const Rect candidate = rectAt({x, y}, wanted.size());
      if (clampedOrigin(candidate, area) != candidate.origin()) continue;
      if (nearest && squaredDistance({x, y}, wanted.origin()) >= squaredDistance(*nearest, wanted.origin())) continue;
      if (isFree(candidate, others, distance)) nearest = Point{x, y};
    }
  }
  return nearest;
}

/// One step down and to the left for each widget that is there already, so that none is covered completely.
Point cascaded(Point first, Size size, std::span<const Rect> others, const Rect& area) {
  Point spot = first;
  for (std::size_t i = 0; i <= others.size(); ++i) {
    const int shift = static_cast<int>(i) * gridStep;
    spot = clampedOrigin(rectAt({first.x - shift, first.y + shift}, size), area);
    if (std::ranges::find(others, spot, &Rect::origin) == others.end()) return spot;
  }
  return spot;
}

}  // namespace

Point spotForNew(Size size, std::span<const Rect> others, const Rect& area) {
  const Point first{area.right() - gap - size.width, area.y + gap};
  for (int x = first.x; x >= area.x + gap; x -= gridStep) {
    for (int y = first.y; y + size.height + gap <= area.bottom(); y += gridStep) {
      if (isFree(rectAt({x, y}, size), others, gap)) return {x, y};
    }
  }
  const Point corner = clampedOrigin(rectAt(first, size), area);
  if (const auto any = nearestFreeSpot(rectAt(corner, size), others, area)) return *any;
  return cascaded(corner, size, others, area);
}

std::optional<Point> nearestFreeSpot(const Rect& wanted, std::span<const Rect> others, const Rect& area) {
  const Rect clamped = rectAt(clampedOrigin(wanted, area), wanted.size());
  if (isFree(clamped, others, 0)) return clamped.origin();
  if (const auto apart = nearestAtDistance(clamped, others, area, gap)) return apart;
  return nearestAtDistance(clamped, others, area, 0);
}

}  // namespace desktop
