// Prints places in failed expectations, and has the sizes that the tests place.
#pragma once

#include <optional>
#include <ostream>
#include <string_view>

#include "desktop/placement/arrangement.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

inline std::ostream& operator<<(std::ostream& out, const Point& point) { return out << point.x << "," << point.y; }
inline std::ostream& operator<<(std::ostream& out, const Rect& rect) {
  return out << rect.width << "x" << rect.height << "+" << rect.x << "+" << rect.y;
}
inline std::ostream& operator<<(std::ostream& out, const Arranged& arranged) {
  return out << "copy " << arranged.id << " on monitor " << arranged.monitor << " at " << arranged.rect;
}
inline std::ostream& operator<<(std::ostream& out, const Place& place) {
  return out << place.monitor.make << " " << place.monitor.model << " " << place.monitor.serial << " "
             << place.monitor.connector << " corner " << static_cast<int>(place.corner) << " inset " << place.inset;
}

inline constexpr Size smallSize{240, 240};
inline constexpr Size mediumSize{480, 240};
inline constexpr Size largeSize{480, 480};

inline Size sizeOf(protocol::WidgetFamily family) {
  if (family == protocol::WidgetFamily::systemSmall) return smallSize;
  if (family == protocol::WidgetFamily::systemMedium) return mediumSize;
  return largeSize;
}

}  // namespace desktop
