// Where each placed copy is on the monitors of the moment. The stored places stay as they are, so a copy returns to its
// own monitor when that comes back.
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

struct Arranged {
  int id = 0;               ///< of the copy
  std::size_t monitor = 0;  ///< index of the monitor it is on now
  Rect rect;
  bool operator==(const Arranged&) const = default;
};

/// In the order of the placements. Copies whose own monitor is there and shows them wholly are exactly at their place.
/// The others are on their own monitor as far as it reaches, or on the primary one (else the first) for the time being.
/// A copy that is larger than its monitor is shown smaller. None covers another as long as there is room: of two that
/// would, as boards that grew with the text do, the later one is at the nearest free place. Empty where
/// there is no monitor.
std::vector<Arranged> arrange(const Placements& placements, std::span<const Monitor> monitors, FamilySizes sizes);

/// Where a further widget goes (`spotForNew`) on the primary monitor. None where there is no monitor.
std::optional<Place> placeForNew(Size size, const Placements& placements, std::span<const Monitor> monitors,
                                 FamilySizes sizes);

}  // namespace desktop
