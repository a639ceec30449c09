// The formats in which one board is shown, each by its painter.
#pragma once

#include <expected>
#include <string>

#include "host/commands/command_line.hpp"
#include "platform/view_tree/node.hpp"

namespace host {

/// A board on its way out, with what its formats say of it beside its view.
struct Board {
  platform::Node view;  ///< as the extension answered it
  std::string title;    ///< the widget's name
  bool sample = false;  ///< a placeholder: pictures draw bars in place of its texts
};

/// The board in the line's format: what to write, or why not, as a sentence without its full stop.
std::expected<std::string, std::string> drawn(const Board& board, const CommandLine& line);

}  // namespace host
