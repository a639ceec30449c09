// Where each node of a view tree stands on a grid of cells: the passes measure and place. Points become cells by two
// rules: a cell is about 12 points wide and 16 high, and what keeps things apart (padding from 6 points, any spacing
// in a row) keeps at least one column between them.
#pragma once

#include <vector>

#include "protocol/view_tree/node.hpp"
#include "render/terminal/terminal_text.hpp"

namespace render::terminal {

/// Whether a capsule shows: one that does not needs no padding, which would only move its text off the edge.
enum class Capsules { drawn, bare };

struct CellInsets {
  int top = 0;
  int leading = 0;
  int bottom = 0;
  int trailing = 0;
};

/// A node's place. Sizes and places are in cells, padding included; x and y count from the parent's inner corner.
struct Box {
  const protocol::Node* node = nullptr;
  CellInsets padding;
  std::vector<Box> children;
  ShownText text;

  // measured
  int ideal = 0;          ///< columns to show all of it on one line
  bool expands = false;   ///< takes all columns that it is given
  bool headline = false;  ///< holds a headline, which stands off from what it heads by a blank line
  int leadingColumn = 0;  ///< of a row: columns that its first child shares with the rows around

  // placed
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  int baseline = 0;  ///< the line of the first text, from the top
  std::vector<Line> lines;
};

/// The measure pass. The boxes point into the tree, which must outlive them. What lies deeper than 512 levels shows as
/// "…": no reader of JSON lets more in.
Box measured(const protocol::Node& node, Capsules capsules);

/// The place pass: lays the box out in `width` columns; its height follows. No child reaches beyond its parent.
void place(Box& box, int width);

}  // namespace render::terminal
