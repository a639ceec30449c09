// What a stack needs to know about a node before it distributes its room: the natural width, whether the node can grow,
// and the gap to a sibling. All of this depends on the tree alone.
#pragma once

#include <optional>

#include "protocol/view_tree/node.hpp"
#include "render/layout/text_measurer.hpp"

namespace render {

/// A length from outside, clamped to a range in which sums are exact. Negative values and NaN give 0.
double sensibleLength(double length);

/// The width in points at which no text of the node is broken or cut. Nodes that can grow count with their minimum.
double naturalWidth(const protocol::Node& node, TextMeasurer& measurer);

/// Whether a node in a row takes all the width that it is offered.
bool growsSideways(const protocol::Node& node);

/// Whether a node in a column takes all the height that it is offered.
bool growsDown(const protocol::Node& node);

/// Whether the node only separates others, so that it is useless at the end of a board.
bool separates(const protocol::Node& node);

/// The gap between two children of a stack. Without a given spacing, it is 0 between two texts, which read as lines of
/// one paragraph, and 8 points otherwise.
double gapBetween(const std::optional<double>& spacing, const protocol::Node& before, const protocol::Node& after);

}  // namespace render
