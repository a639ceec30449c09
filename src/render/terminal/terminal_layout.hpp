// The position of each node of a view tree on a grid of cells: the passes measure and place. A cell is about 12 points
// wide and 16 high; padding of 6 points or more and any spacing in a row become at least one column.
#pragma once

#include <vector>

#include "protocol/view_tree/node.hpp"
#include "render/terminal/terminal_text.hpp"

namespace render::terminal {

/// Whether capsules are drawn. The padding of a capsule that is not drawn is left out.
enum class Capsules { drawn, bare };

struct CellInsets {
  int top = 0;
  int leading = 0;
  int bottom = 0;
  int trailing = 0;
};

/// A node's size and position in cells, including its padding; x and y are relative to the parent's content.
struct Box {
  const protocol::Node* node = nullptr;
  CellInsets padding;
  std::vector<Box> children;
  ShownText text;

  // measured
  int ideal = 0;          ///< columns needed to show everything on one line
  bool expands = false;   ///< takes all columns that are offered
  bool headline = false;  ///< holds a headline, which is followed by a blank line
  int leadingColumn = 0;  ///< of a row: width of the leading column that it shares with the rows around it

  // placed
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  int baseline = 0;  ///< the line of the first text, from the top
  std::vector<Line> lines;
};

/// The measure pass. The boxes point into the tree, which must outlive them. Nodes deeper than 512 levels are shown as
/// "…"; the JSON reader accepts no deeper trees.
Box measured(const protocol::Node& node, Capsules capsules);

/// The place pass: lays the box out in `width` columns and sets its height. No child leaves its parent.
void place(Box& box, int width);

}  // namespace render::terminal
