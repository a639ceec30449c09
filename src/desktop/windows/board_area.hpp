// The content of a board's window for the keyboard and for screen readers: a widget that can be focused and whose
// accessible object (AT-SPI) has a name, a description, the actions "open" and "menu", and the rows of the board as
// children. The widget itself draws nothing.
#pragma once

#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "render/picture/drawing.hpp"

namespace desktop {

/// A board as screen readers know it. The frames of the rows are in points of a board that is `width` points wide.
struct AccessibleBoard {
  std::string name;
  std::string description;
  std::vector<render::ReadRow> rows;
  double width = 1;
  std::string openAction;  ///< what a screen reader calls the actions, in the person's language
  std::string menuAction;
};

/// A new widget with the signals "open-asked" and "menu-asked", which have no arguments and are emitted some time after
/// an assistive technology has asked for the action.
GtkWidget* newBoardArea();

/// Describes the board that `area` shows now. Only what changes is announced.
void describeArea(GtkWidget* area, const AccessibleBoard& board);

}  // namespace desktop
