// Computes where each placed copy is on the monitors that are connected now. Stored places do not change, so a copy
// returns to its own monitor when that is connected again.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <absl/functional/function_ref.h>

#include "desktop/placement/placements.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

/// The size of a family in points.
using FamilySizes = absl::FunctionRef<Size(protocol::WidgetFamily family)>;

/// The size of the copy in points: its family's times its zoom.
Size zoomedSize(const Placed& placed, FamilySizes sizes);

struct Arranged {
  int id = 0;               ///< of the copy
  std::size_t monitor = 0;  ///< index of the monitor it is on now
  Rect rect;
  bool operator==(const Arranged&) const = default;
};

/// In the order of the placements:
/// - A copy whose own monitor is connected and can show all of it is exactly at its stored place.
/// - A copy that reaches beyond its own monitor is moved onto it; one that is larger than the monitor is shown smaller.
/// - A copy whose monitor is not connected is on the primary monitor, else on the first.
/// - Of two copies that would overlap, for example because boards grew with the text size, the later one is
///   moved to the nearest free place, as long as there is one.
/// Without a monitor, the result is empty.
std::vector<Arranged> arrange(const Placements& placements, std::span<const Monitor> monitors, FamilySizes sizes);

/// The ids of the copies monitor by monitor, from top to bottom and then from left to right.
std::vector<int> readingOrder(std::span<const Arranged> arranged);

/// The place of a new widget on the primary monitor, see `spotForNew`. None if there is no monitor.
std::optional<Place> placeForNew(Size size, const Placements& placements, std::span<const Monitor> monitors,
                                 FamilySizes sizes);

}  // namespace desktop
