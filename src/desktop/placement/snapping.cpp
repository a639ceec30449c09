#include "desktop/placement/snapping.hpp"

#include <cstdlib>
#include <vector>

#include "desktop/placement/grid.hpp"

namespace desktop {
namespace {

/// A rectangle's extent along one axis.
struct Extent {
  int start = 0;
  int length = 0;
  int end() const { return start + length; }
};

Extent across(const Rect& rect) { return {rect.x, rect.width}; }
Extent down(const Rect& rect) { return {rect.y, rect.height}; }

bool besideEachOther(const Extent& one, const Extent& other) {
  return one.start < other.end() + gap && other.start < one.end() + gap;
}

int nearestGridLine(int start, const Extent& area) {
  const int first = area.start + gap;
  const int steps = (std::max(0, start - first) + gridStep / 2) / gridStep;
  return first + steps * gridStep;
}

/// The starts along one axis to which a widget snaps: the area's, then each other widget's. Of equally near ones, the
/// first is used.
struct Axis {
  Extent moved;
  Extent area;
  std::vector<int> stops;

  explicit Axis(const Extent& wanted, const Extent& bounds)
      : moved(wanted),
        area(bounds),
        stops{area.start, area.end() - moved.length, area.start + gap, area.end() - gap - moved.length} {}

  void addWidget(const Extent& widget, bool beside) {
    stops.insert(stops.end(), {widget.start, widget.end() - moved.length});
    if (beside) stops.insert(stops.end(), {widget.end() + gap, widget.start - gap - moved.length});
  }

  int snapped() const {
    const int lastStart = area.end() - moved.length;
    if (lastStart < area.start) return area.start;
    const int wanted = std::clamp(moved.start, area.start, lastStart);
    int best = nearestGridLine(wanted, area);
    int distance = pull + 1;
    for (const int stop : stops) {
      if (stop < area.start || stop > lastStart || std::abs(stop - wanted) >= distance) continue;
      best = stop;
      distance = std::abs(stop - wanted);
    }
    return std::clamp(best, area.start, lastStart);
  }
};

}  // namespace

Point snappedOrigin(const Rect& wanted, std::span<const Rect> others, const Rect& area) {
  Axis horizontal(across(wanted), across(area));
  Axis vertical(down(wanted), down(area));
  for (const Rect& other : others) {
    horizontal.addWidget(across(other), besideEachOther(down(wanted), down(other)));
    vertical.addWidget(down(other), besideEachOther(across(wanted), across(other)));
  }
  return {horizontal.snapped(), vertical.snapped()};
}

Point steppedOrigin(const Rect& rect, Direction direction, const Rect& area) {
  Rect moved = rect;
  switch (direction) {
    case Direction::left:
      moved.x -= gridStep;
      break;
    case Direction::right:
      moved.x += gridStep;
      break;
    case Direction::up:
      moved.y -= gridStep;
      break;
    case Direction::down:
      moved.y += gridStep;
      break;
  }
  return clampedOrigin(moved, area);
}

}  // namespace desktop
