// A view tree as a board of character cells, for a terminal or for plain text. Knows stacks, texts, spacers and
// dividers, and nothing of the widget that wrote them; keys are expected worded already (host/texts), one that is left
// shows as written.
//
// Three passes: measure (terminal_layout), place (terminal_layout), paint (terminal_canvas).
#pragma once

#include <string>

#include "protocol/view_tree/node.hpp"

namespace render {

/// Columns beyond which a board only gets emptier: a row's eye path from title to badge grows too long. A small
/// widget's board is as narrow as its content wants it.
inline constexpr int wideBoard = 60;
inline constexpr int smallBoard = 34;

struct TerminalOptions {
  int columns = 80;             ///< the terminal's width; the board is never wider
  int widestBoard = wideBoard;  ///< nor wider than this
  bool escapes = false;         ///< colours and weights by SGR sequences (ECMA-48); else text alone
};

/// The board in a frame. Every line ends with '\n' and all have the same display width, whatever the texts hold:
/// control characters, escape sequences, line breaks and what reorders text never reach the output, invalid UTF-8
/// shows as U+FFFD, and no cluster of characters that a reader takes for one is cut. Under 8 columns the frame gives
/// way.
std::string drawTerminalBoard(const protocol::Node& view, const TerminalOptions& options);

/// The board in reading order without frame, colours or trailing blanks, for tooltips and readers of text: as wide as
/// its longest line needs, at most `columns`. Every line ends with '\n'.
std::string drawPlainBoard(const protocol::Node& view, int columns);

}  // namespace render
