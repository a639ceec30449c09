// The menu of a placed copy.
#pragma once

#include <gtk/gtk.h>

#include "desktop/texts/texts.hpp"
#include "desktop/windows/board_commands.hpp"

namespace desktop {

/// Opens the menu at the pointer if `event` is a pointer event, or at the board if it is null. `commands` and `texts`
/// must outlive the menu.
void popUpBoardMenu(GtkWidget* board, int id, BoardCommands& commands, const Texts& texts, const GdkEvent* event);

}  // namespace desktop
