// The first pass of layout: the size of each node of a tree in the room that is offered to it, and its offset among its
// siblings. place.hpp turns the result into positions.
#pragma once

#include <limits>
#include <vector>

#include "protocol/view_tree/node.hpp"
#include "render/layout/geometry.hpp"
#include "render/layout/text_measurer.hpp"

namespace render {

inline constexpr double unlimitedHeight = std::numeric_limits<double>::infinity();

/// The direction in which a stack arranges its children.
enum class Axis { horizontal, vertical };

/// The room that a parent offers. With unlimited height a node is as high as it needs. With a limit, rows are cut from
/// the bottom, and spacers share what is left over.
struct Offer {
  double width = 0;
  double height = unlimitedHeight;
  Axis axis = Axis::vertical;  ///< of the parent; decides the direction of spacers and dividers
  double leadingColumn = 0;    ///< of a row in a stack of rows: the minimum width of its first child
};

/// A node with its size in points.
struct Measured {
  const protocol::Node* node = nullptr;
  bool present = true;           ///< false if there is no room for it and nothing is painted
  protocol::EdgeInsets padding;  ///< the node's own, clamped
  Size size;                     ///< including the padding
  double firstBaseline = 0;      ///< from the top; the bottom if there is no text
  double gap = 0;                ///< between the previous sibling and this node
  double crossOffset = 0;        ///< perpendicular to the parent's axis, from the edge of its content
  TextExtent text;               ///< of a text node
  double textWidthLimit = 0;     ///< what `text` was measured with
  int textMaxLines = 0;
  std::vector<Measured> children;  ///< those that are present
};

/// Heights and gaps in vertical stacks are multiples of `unit`, so that equal rows have equal heights in pixels.
Measured measure(const protocol::Node& node, Offer offer, TextMeasurer& measurer, double unit);

}  // namespace render
