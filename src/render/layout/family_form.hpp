// How large the widget families are in points: a grid of square cells. Small is one cell, medium two beside each
// other, large two by two. A cell holds a full board of five rows at its natural size, and one with every optional
// line at more than three quarters of it.
#pragma once

#include <optional>
#include <string_view>

#include "render/layout/geometry.hpp"

namespace render {

/// The box of a board in points, and how much larger than its own points a board is naturally shown in it.
struct BoardForm {
  Size size;
  double magnification = 1;
  bool operator==(const BoardForm&) const = default;
};

inline constexpr double cell = 240;
inline constexpr BoardForm smallFamily{{cell, cell}};
inline constexpr BoardForm mediumFamily{{2 * cell, cell}};
/// A large board shows no more rows than a medium one: its room goes into larger type, to be read from further away.
inline constexpr BoardForm largeFamily{{2 * cell, 2 * cell}, 1.4};

/// The form of a family by its name in the extension protocol ("systemMedium"); none for a name it does not know.
constexpr std::optional<BoardForm> familyForm(std::string_view family) {
  if (family == "systemSmall") return smallFamily;
  if (family == "systemMedium") return mediumFamily;
  if (family == "systemLarge") return largeFamily;
  return std::nullopt;
}

}  // namespace render
