// A view tree as a board of character cells, for a terminal or for plain text. Texts with keys are expected to be
// localised already (host/texts); a key that is left is shown as it is.
//
// Three passes: measure (terminal_layout), place (terminal_layout), paint (terminal_canvas).
#pragma once

#include <string>

#include "protocol/view_tree/node.hpp"

namespace render {

/// The widest boards in columns: `smallBoard` for the small family, `wideBoard` for the others. A wider board would
/// only add blanks between the header's word and its badge.
inline constexpr int wideBoard = 60;
inline constexpr int smallBoard = 34;

struct TerminalOptions {
  int columns = 80;             ///< the terminal's width, which the board does not exceed
  int widestBoard = wideBoard;  ///< another limit of the board's width
  bool escapes = false;         ///< use SGR sequences (ECMA-48) for colours and weights
};

/// The board in a frame. Every line ends with '\n' and all have the same display width. Control characters, escape
/// sequences, line breaks and direction overrides in texts never reach the output, invalid UTF-8 is shown as U+FFFD,
/// and no grapheme cluster is cut. Below 8 columns there is no frame.
std::string drawTerminalBoard(const protocol::Node& view, const TerminalOptions& options);

/// The board in reading order without frame, colours or trailing blanks, for tooltips and screen readers. It is as wide
/// as its longest line, at most `columns`. Every line ends with '\n'.
std::string drawPlainBoard(const protocol::Node& view, int columns);

}  // namespace render
