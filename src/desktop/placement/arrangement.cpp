#include "desktop/placement/arrangement.hpp"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "desktop/placement/free_spot.hpp"

namespace desktop {
namespace {

/// How well a copy's stored place can be kept. Copies are placed in this order, so a copy whose place is exact never
/// gives way to one that is moved.
enum class Fit { exact, clamped, elsewhere };

/// As large as the area allows, in its own proportions.
Size shrunkToFit(Size size, const Rect& area) {
  const double scale =
      std::min({1.0, static_cast<double>(area.width) / size.width, static_cast<double>(area.height) / size.height});
  if (scale == 1) return size;
  return {std::max(1, static_cast<int>(size.width * scale)), std::max(1, static_cast<int>(size.height * scale))};
}

struct Wish {
  Arranged wanted;
  Fit fit = Fit::exact;
};

std::vector<Wish> wishes(const Placements& placements, std::span<const Monitor> monitors, FamilySizes sizes) {
  std::vector<Wish> result;
  const auto primary = primaryMonitor(monitors);
  if (!primary) return result;
  for (const Placed& placed : placements.all()) {
    const auto own = findMonitor(placed.place.monitor, monitors);
    const std::size_t monitor = own.value_or(*primary);
    const Rect& area = monitors[monitor].area;
    const Size size = shrunkToFit(zoomedSize(placed, sizes), area);
    const Rect rect = rectAt(originOf(placed.place, size, area), size);
    const bool fits = clampedOrigin(rect, area) == rect.origin();
    result.push_back({{placed.id, monitor, rect}, !own ? Fit::elsewhere : fits ? Fit::exact : Fit::clamped});
  }
  return result;
}

std::vector<Rect> rectsOn(std::size_t monitor, std::span<const Arranged> arranged) {
  std::vector<Rect> rects;
  for (const Arranged& copy : arranged) {
    if (copy.monitor == monitor) rects.push_back(copy.rect);
  }
  return rects;
}

}  // namespace

Size zoomedSize(const Placed& placed, FamilySizes sizes) {
  const Size size = sizes(placed.family);
  const auto zoomed = [&](int length) {
    return std::max(1, static_cast<int>(std::lround(length * placed.zoom / 100.0)));
  };
  return {zoomed(size.width), zoomed(size.height)};
}

std::vector<Arranged> arrange(const Placements& placements, std::span<const Monitor> monitors, FamilySizes sizes) {
  const auto all = wishes(placements, monitors, sizes);
  std::vector<Arranged> settled;
  for (const Fit fit : {Fit::exact, Fit::clamped, Fit::elsewhere}) {
    for (const Wish& wish : all) {
      if (wish.fit != fit) continue;
      Arranged copy = wish.wanted;
      const Rect& area = monitors[copy.monitor].area;
      const auto free = nearestFreeSpot(copy.rect, rectsOn(copy.monitor, settled), area);
      copy.rect = rectAt(free.value_or(clampedOrigin(copy.rect, area)), copy.rect.size());
      settled.push_back(copy);
    }
  }
  std::vector<Arranged> result;
  for (const Wish& wish : all) result.push_back(*std::ranges::find(settled, wish.wanted.id, &Arranged::id));
  return result;
}

std::vector<int> readingOrder(std::span<const Arranged> arranged) {
  std::vector<Arranged> sorted(arranged.begin(), arranged.end());
  std::ranges::stable_sort(sorted, {},
                           [](const Arranged& copy) { return std::tuple(copy.monitor, copy.rect.y, copy.rect.x); });
  std::vector<int> ids;
  for (const Arranged& copy : sorted) ids.push_back(copy.id);
  return ids;
}

std::optional<Place> placeForNew(Size size, const Placements& placements, std::span<const Monitor> monitors,
                                 FamilySizes sizes) {
  const auto primary = primaryMonitor(monitors);
  if (!primary) return std::nullopt;
  const Monitor& monitor = monitors[*primary];
  size = shrunkToFit(size, monitor.area);
  const auto others = rectsOn(*primary, arrange(placements, monitors, sizes));
  return placeOf(rectAt(spotForNew(size, others, monitor.area), size), monitor);
}

}  // namespace desktop
