// From a view tree, a family box and font measures to a board: what to paint, and where. A pure function in two of
// three passes: measure (sizes, bottom up) and place (positions, top down). Painting is the third and lives elsewhere.
//
// Whatever the tree, nothing that is painted overlaps another thing or leaves the box: lengths that make no sense are
// pulled into range, and what has no room is left out whole.
#pragma once

#include <variant>
#include <vector>

#include "protocol/view_tree/node.hpp"
#include "render/layout/family_form.hpp"
#include "render/layout/geometry.hpp"
#include "render/layout/text_measurer.hpp"

namespace render {

/// A text with the limits that it was measured with; `baseline` is that of the first line, from the board's top.
struct PlacedText {
  const protocol::TextNode* text = nullptr;
  Rect frame;
  double baseline = 0;
  double widthLimit = 0;
  int maxLines = 0;
};

/// A thin rule, lying or standing.
struct PlacedRule {
  Rect frame;
};

/// A background behind what follows it.
struct PlacedCapsule {
  const protocol::CapsuleBackground* capsule = nullptr;
  Rect frame;
};

using Placed = std::variant<PlacedCapsule, PlacedRule, PlacedText>;

/// A board in its own points; `fit` of them make one point of the box. Refers to the tree that it was made from.
struct Board {
  double fit = 1;
  Size size;  ///< the box in the board's points: the box divided by `fit`
  bool hasContainerBackground = false;
  std::vector<Placed> items;  ///< in the order of painting
};

/// Boards that are too high for the box are scaled down evenly to this part of their natural size and no further.
inline constexpr double smallestFit = 0.7;

/// Lays `root` out from the top left of the form's box. A board that is too high is scaled down evenly; where that is
/// not enough either, rows are dropped from the bottom, and a paragraph is cut at a line with an ellipsis.
Board layOut(const protocol::Node& root, const BoardForm& form, TextMeasurer& measurer);

}  // namespace render
