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
  bool centred = false;  ///< each line in the middle of the frame instead of at its left
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

/// A board in its own points, `magnification` points of the box each. Refers to the tree that it was made from.
struct Board {
  double magnification = 1;
  Size size;  ///< the box in the board's points
  bool hasContainerBackground = false;
  bool whole = true;          ///< nothing was left out or cut for want of height
  std::vector<Placed> items;  ///< in the order of painting
};

/// Lays `root` out from the top left of the form's box, in the same sizes of type whatever the board holds. Where a
/// board is too high, rows are left out from the bottom and a paragraph is cut at a line with an ellipsis; `whole`
/// tells so, and whoever knows what the rows mean can leave out some and say so on the board.
Board layOut(const protocol::Node& root, const BoardForm& form, TextMeasurer& measurer);

}  // namespace render
