// How large the widget families are in points, on a grid of columns of 230 and rows of 150 points with gaps of 20:
//
//   small    one column, one row     230 x 150
//   medium   two columns, two rows   480 x 320
//   large    two columns, three rows 480 x 490
//
// Two small boards side by side are as wide as a medium one, and two stacked ones as high. The fullest board of each
// family fits without being scaled down.
#pragma once

#include "protocol/view_tree/widget_family.hpp"
#include "render/layout/geometry.hpp"

namespace render {

/// The size of a board's box in points, and by how much the board's content is magnified in it.
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
/// A large board shows the same rows as a medium one in larger type, to be read from further away.
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

/// The radius of the board's corners in points: one and a half times the padding of boards.
constexpr double boardRadius(const BoardForm& form) { return 18 * form.magnification; }

}  // namespace render
