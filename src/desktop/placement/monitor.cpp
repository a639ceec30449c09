#include "desktop/placement/monitor.hpp"

#include <cstdint>

namespace desktop {
namespace {

bool sameKind(const MonitorIdentity& one, const MonitorIdentity& other) {
  return one.make == other.make && one.model == other.model;
}

std::int64_t sharedArea(const Rect& one, const Rect& other) {
  const std::int64_t width = std::min(one.right(), other.right()) - std::max(one.x, other.x);
  const std::int64_t height = std::min(one.bottom(), other.bottom()) - std::max(one.y, other.y);
  return width > 0 && height > 0 ? width * height : 0;
}

/// The square of the distance from the rectangle's centre to the area.
std::int64_t distance(const Rect& rect, const Rect& area) {
  const Point middle{rect.x + rect.width / 2, rect.y + rect.height / 2};
  const std::int64_t dx = middle.x - std::clamp(middle.x, area.x, area.x + std::max(0, area.width));
  const std::int64_t dy = middle.y - std::clamp(middle.y, area.y, area.y + std::max(0, area.height));
  return dx * dx + dy * dy;
}

}  // namespace

std::optional<std::size_t> findMonitor(const MonitorIdentity& wanted, std::span<const Monitor> monitors) {
  std::optional<std::size_t> bySerial;
  std::optional<std::size_t> byConnector;
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    const MonitorIdentity& identity = monitors[i].identity;
    if (!sameKind(identity, wanted)) continue;
    const bool sameConnector = identity.connector == wanted.connector;
    const bool serialsKnown = !identity.serial.empty() && !wanted.serial.empty();
    if (serialsKnown && identity.serial == wanted.serial) {
      if (sameConnector) return i;
      if (!bySerial) bySerial = i;
    }
    if (!serialsKnown && sameConnector && !byConnector) byConnector = i;
  }
  return bySerial ? bySerial : byConnector;
}

std::optional<std::size_t> primaryMonitor(std::span<const Monitor> monitors) {
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    if (monitors[i].primary) return i;
  }
  if (monitors.empty()) return std::nullopt;
  return 0;
}

std::optional<std::size_t> monitorUnder(const Rect& rect, std::span<const Monitor> monitors) {
  std::optional<std::size_t> best;
  for (std::size_t i = 0; i < monitors.size(); ++i) {
    if (!best) {
      best = i;
      continue;
    }
    const auto shown = sharedArea(rect, monitors[i].area);
    const auto mostShown = sharedArea(rect, monitors[*best].area);
    const bool nearer = distance(rect, monitors[i].area) < distance(rect, monitors[*best].area);
    if (shown > mostShown || (shown == 0 && mostShown == 0 && nearer)) best = i;
  }
  return best;
}

}  // namespace desktop
