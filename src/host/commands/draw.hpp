// How one board is drawn: what the painters of text and of pictures have in common.
#pragma once

#include <expected>
#include <string>

#include <absl/functional/function_ref.h>

#include "host/command_line/command_line.hpp"
#include "host/extension/entry.hpp"
#include "protocol/view_tree/node.hpp"

namespace host {

/// A board to be drawn, with what its formats say of it beside its view.
struct Board {
  protocol::Node view;  ///< as the extension answered it
  std::string title;    ///< the widget's name
  bool sample = false;  ///< a placeholder: pictures draw bars in place of its texts
  BoardHolds holds = BoardHolds::day;
};

/// The bytes to write, or why there are none, as a sentence without its full stop.
using DrawnBoard = std::expected<std::string, std::string>;

/// Draws the board in the line's format.
using Draw = absl::FunctionRef<DrawnBoard(const Board& board, const CommandLine& line)>;

/// Text, JSON and the forms for status bars.
DrawnBoard drawText(const Board& board, const CommandLine& line);

}  // namespace host
