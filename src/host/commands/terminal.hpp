// What standard output is to a text board: how wide, and whether it understands escape sequences.
#pragma once

#include <string_view>

#include "protocol/view_tree/widget_family.hpp"
#include "render/terminal/terminal_board.hpp"

namespace host {

/// Whether standard output is a terminal.
bool onTerminal();

/// For a board of a family on standard output. Escape sequences only on a terminal that is not "dumb", and not where
/// NO_COLOR is set and not empty. The width is the terminal's, else that of `COLUMNS`, else 80.
render::TerminalOptions terminalOptions(protocol::WidgetFamily family);

/// For a board of a family in a file.
render::TerminalOptions fileOptions(protocol::WidgetFamily family);

}  // namespace host
