// Computes from a view tree, a family's box and font measures what to paint and where. There are three passes: measure
// (sizes, bottom up), place (positions, top down) and paint, which is in render/picture.
//
// For any tree, painted items neither overlap nor leave the box: absurd lengths are clamped, and items without room are
// left out whole.
#pragma once

#include <variant>
#include <vector>

#include "protocol/view_tree/node.hpp"
#include "render/layout/family_form.hpp"
#include "render/layout/geometry.hpp"
#include "render/layout/text_measurer.hpp"

namespace render {

/// A text with the limits it was measured with; `baseline` is the first line's, from the board's top.
struct PlacedText {
  const protocol::TextNode* text = nullptr;
  Rect frame;
  double baseline = 0;
  double widthLimit = 0;
  int maxLines = 0;
  bool centred = false;  ///< lines are centred in the frame instead of starting at its left
};

/// A thin horizontal or vertical rule.
struct PlacedRule {
  Rect frame;
};

/// A background behind the items that follow it.
struct PlacedCapsule {
  const protocol::CapsuleBackground* capsule = nullptr;
  Rect frame;
};

using Placed = std::variant<PlacedCapsule, PlacedRule, PlacedText>;

/// A board in its own points, each of which is `magnification` points of the box. Refers to the tree it was made from.
struct Board {
  double magnification = 1;
  Size size;  ///< the box in the board's points
  bool hasContainerBackground = false;
  bool whole = true;          ///< nothing was left out or cut for lack of height
  std::vector<Placed> items;  ///< in the order of painting
};

/// Lays `root` out from the top left of the form's box. The type size does not depend on the content. If the board is
/// too high, rows are left out from the bottom and a paragraph is cut with an ellipsis; `whole` is false then, and a
/// caller who knows what the rows mean can remove some, count them on the board and lay it out again.
Board layOut(const protocol::Node& root, const BoardForm& form, TextMeasurer& measurer);

}  // namespace render
