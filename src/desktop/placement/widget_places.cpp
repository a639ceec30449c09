#include "desktop/placement/widget_places.hpp"

#include <algorithm>
#include <utility>

#include "desktop/placement/free_spot.hpp"

namespace desktop {

const Arranged* WidgetPlaces::arranged(int id) const {
  const auto found = std::ranges::find(arranged_, id, &Arranged::id);
  return found == arranged_.end() ? nullptr : &*found;
}

void WidgetPlaces::setMonitors(std::vector<Monitor> monitors) {
  monitors_ = std::move(monitors);
  arrangeAll();
}

Point WidgetPlaces::landing(int id, Point wanted, Snapping snapping) const {
  const auto* const where = arranged(id);
  if (where == nullptr) return wanted;
  const Rect rect = rectAt(wanted, where->rect.size());
  const auto monitor = monitorUnder(rect, monitors_);
  if (!monitor) return wanted;
  const Point origin =
      snapping == Snapping::on ? snappedOrigin(rect, others(id), monitors_[*monitor].area) : rect.origin();
  return freeOrigin(id, rectAt(origin, rect.size()), *monitor);
}

bool WidgetPlaces::add(const std::string& kind, protocol::WidgetFamily family) {
  const auto place = placeForNew(sizes_(family), placements_, monitors_, sizes_);
  if (!place || !placements_.add(kind, family, *place)) return false;
  arrangeAll();
  return true;
}

bool WidgetPlaces::moveTo(int id, Point origin) {
  const auto* const where = arranged(id);
  if (where == nullptr) return false;
  const Rect rect = rectAt(origin, where->rect.size());
  const auto monitor = monitorUnder(rect, monitors_);
  if (!monitor) return false;
  keepAt(id, rect, *monitor);
  return true;
}

bool WidgetPlaces::step(int id, Direction direction) {
  const auto* const where = arranged(id);
  return where != nullptr && moveTo(id, steppedOrigin(where->rect, direction, monitorOf(*where).area));
}

bool WidgetPlaces::resize(int id, protocol::WidgetFamily family) {
  const auto* const placed = placements_.find(id);
  return placed != nullptr && reshape(id, family, placed->zoom);
}

bool WidgetPlaces::zoom(int id, int percent) {
  const auto* const placed = placements_.find(id);
  return placed != nullptr && reshape(id, placed->family, std::clamp(percent, leastZoom, mostZoom));
}

bool WidgetPlaces::reshape(int id, protocol::WidgetFamily family, int zoom) {
  const auto* const where = arranged(id);
  Placed wanted = *placements_.find(id);
  wanted.family = family;
  wanted.zoom = zoom;
  if (where == nullptr || *placements_.find(id) == wanted) return false;
  const Monitor& monitor = monitorOf(*where);
  const Size size = zoomedSize(wanted, sizes_);
  const Rect rect = rectAt(originOf(placeOf(where->rect, monitor), size, monitor.area), size);
  placements_.setFamily(id, family);
  placements_.setZoom(id, zoom);
  keepAt(id, rect, where->monitor);
  return true;
}

bool WidgetPlaces::remove(int id) {
  if (placements_.find(id) == nullptr) return false;
  placements_.remove(id);
  arrangeAll();
  return true;
}

std::optional<int> WidgetPlaces::restore(const Placed& placed, std::size_t position) {
  const auto id = placements_.restore(placed, position);
  arrangeAll();
  return id;
}

bool WidgetPlaces::nameKind(const std::string& kind) {
  bool named = false;
  for (const auto& placed : all()) {
    if (!placed.kind.empty()) continue;
    placements_.setKind(placed.id, kind);
    named = true;
  }
  return named;
}

void WidgetPlaces::keepAt(int id, const Rect& rect, std::size_t monitor) {
  const Point origin = freeOrigin(id, rect, monitor);
  placements_.setPlace(id, placeOf(rectAt(origin, rect.size()), monitors_[monitor]));
  arrangeAll();
}

Point WidgetPlaces::freeOrigin(int id, const Rect& rect, std::size_t monitor) const {
  const Rect& area = monitors_[monitor].area;
  return nearestFreeSpot(rect, others(id), area).value_or(clampedOrigin(rect, area));
}

void WidgetPlaces::arrangeAll() { arranged_ = arrange(placements_, monitors_, sizes_); }

std::vector<Rect> WidgetPlaces::others(int id) const {
  std::vector<Rect> rects;
  for (const auto& each : arranged_) {
    if (each.id != id) rects.push_back(each.rect);
  }
  return rects;
}

}  // namespace desktop
