// The first pass of layout: how large each node of a tree is in the room that is offered to it, and how it stands
// among its siblings. place.hpp turns the result into positions.
#pragma once

#include <limits>
#include <vector>

#include "protocol/view_tree/node.hpp"
#include "render/layout/geometry.hpp"
#include "render/layout/text_measurer.hpp"

namespace render {

inline constexpr double unlimitedHeight = std::numeric_limits<double>::infinity();

/// The direction in which a stack lines its children up.
enum class Axis { horizontal, vertical };

/// The room that a parent offers. Without a limit of height a node is as high as it needs; with one it is cut to it,
/// rows from the bottom first, and spacers share what is left over.
struct Offer {
  double width = 0;
  double height = unlimitedHeight;
  Axis axis = Axis::vertical;  ///< of the parent; spacers and dividers go by it
  double leadingColumn = 0;    ///< of a row in a stack of rows: the least width of its first child
};

/// A node with its size in points.
struct Measured {
  const protocol::Node* node = nullptr;
  bool present = true;           ///< false: no room for any of it, nothing is painted
  protocol::EdgeInsets padding;  ///< the node's own, pulled into range
  Size size;                     ///< with the padding
  double firstBaseline = 0;      ///< from the top; the bottom where there is no text
  double gap = 0;                ///< between the sibling before and this one
  double crossOffset = 0;        ///< across the parent's axis, from its content's edge
  TextExtent text;               ///< of a text
  double textWidthLimit = 0;     ///< what `text` was measured with
  int textMaxLines = 0;
  std::vector<Measured> children;  ///< those that are present
};

/// Heights and gaps of what is stacked are whole multiples of `unit`, so that equal rows are equally high in pixels.
Measured measure(const protocol::Node& node, Offer offer, TextMeasurer& measurer, double unit);

}  // namespace render
