// How large the widget families are in points: a grid of square cells. Small is one cell, medium two beside each
// other, large two by two. A cell holds a full board of five rows at its natural size, and one with every optional
// line at more than three quarters of it.
#pragma once

#include <optional>
#include <string_view>

#include "render/layout/geometry.hpp"

namespace render {

inline constexpr double cell = 240;
inline constexpr Size smallFamily{cell, cell};
inline constexpr Size mediumFamily{2 * cell, cell};
inline constexpr Size largeFamily{2 * cell, 2 * cell};

/// The size of a family by its name in the extension protocol ("systemMedium"); none for a name it does not know.
constexpr std::optional<Size> familySize(std::string_view family) {
  if (family == "systemSmall") return smallFamily;
  if (family == "systemMedium") return mediumFamily;
  if (family == "systemLarge") return largeFamily;
  return std::nullopt;
}

}  // namespace render
