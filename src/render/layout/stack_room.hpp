// What a stack asks of a node before it shares out its room: the natural width, whether more room would be taken, and
// the gap to a sibling. All look at the tree alone, not at any room.
#pragma once

#include <optional>

#include "protocol/view_tree/node.hpp"
#include "render/layout/text_measurer.hpp"

namespace render {

/// A length from outside, pulled into the range in which sums stay exact: 0 for what is negative or no number.
double sensibleLength(double length);

/// The width at which no text of the node is broken or cut, in points; what grows counts with its least.
double naturalWidth(const protocol::Node& node, TextMeasurer& measurer);

/// Whether a node of a row, offered more width than it needs, takes it all.
bool growsSideways(const protocol::Node& node);

/// Whether a node of a column, offered more height than it needs, takes it all.
bool growsDown(const protocol::Node& node);

/// Whether the node only parts others: pointless as the last thing on a board.
bool separates(const protocol::Node& node);

/// The gap between two children of a stack. Where the stack names none, lines of text stand as close as the lines of
/// a paragraph, and other things a little apart.
double gapBetween(const std::optional<double>& spacing, const protocol::Node& before, const protocol::Node& after);

}  // namespace render
