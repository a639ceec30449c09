// How large the widget families are in points, on a grid of columns of 230 and rows of 150 points with gaps of 20:
//
//   small    one column, one row     230 x 150
//   medium   two columns, two rows   480 x 320
//   large    two columns, three rows 480 x 490
//
// So two small boards are as wide as a medium one, and as high where one stands below the other. The fullest board of
// each family fits at its natural size.
#pragma once

#include "protocol/view_tree/widget_family.hpp"
#include "render/layout/geometry.hpp"

namespace render {

/// The box of a board in points, and how much larger than its own points a board is shown in it.
struct BoardForm {
  Size size;
  double magnification = 1;
  bool operator==(const BoardForm&) const = default;
};

inline constexpr double boardGap = 20;

constexpr Size boardSize(int columns, int rows) {
  constexpr double column = 230;
  constexpr double row = 150;
  return {columns * (column + boardGap) - boardGap, rows * (row + boardGap) - boardGap};
}

inline constexpr BoardForm smallFamily{boardSize(1, 1)};
inline constexpr BoardForm mediumFamily{boardSize(2, 2)};
/// A large board shows no more rows than a medium one: its room goes into larger type, to be read from further away.
inline constexpr BoardForm largeFamily{boardSize(2, 3), 1.5};

constexpr BoardForm familyForm(protocol::WidgetFamily family) {
  switch (family) {
    case protocol::WidgetFamily::systemSmall:
      return smallFamily;
    case protocol::WidgetFamily::systemMedium:
      return mediumFamily;
    case protocol::WidgetFamily::systemLarge:
      return largeFamily;
  }
  return mediumFamily;
}

/// Of the board's corners, in points: one and a half of the padding that boards have.
constexpr double boardRadius(const BoardForm& form) { return 18 * form.magnification; }

}  // namespace render
