// The menu of a placed copy.
#pragma once

#include <gtk/gtk.h>

#include "desktop/texts/texts.hpp"
#include "desktop/windows/board_commands.hpp"

namespace desktop {

/// At the pointer for an event of it, else at the board. The menu lives until it is closed; what it calls outlives it.
void popUpBoardMenu(GtkWidget* board, int id, BoardCommands& commands, const Texts& texts, const GdkEvent* event);

}  // namespace desktop
