// The menu of a placed copy.
#pragma once

#include <string>

#include <gtk/gtk.h>

#include "desktop/texts/texts.hpp"
#include "desktop/windows/board_commands.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

struct MenuSubject {
  int id = 0;
  protocol::WidgetFamily family;
};

/// At the pointer for an event of it, else at the board. The menu lives until it is closed; what it calls outlives it.
void popUpBoardMenu(GtkWidget* board, const MenuSubject& subject, BoardCommands& commands, const Texts& texts,
                    const GdkEvent* event);

}  // namespace desktop
