// The use of boards by keyboard alone: they come to the front, Tab goes from one to the next, Escape sends them back.
#pragma once

#include <map>
#include <memory>
#include <optional>

#include "desktop/placement/widget_places.hpp"
#include "desktop/windows/board_commands.hpp"
#include "desktop/windows/board_window.hpp"
#include "desktop/windows/x_focus.hpp"

namespace desktop {

class KeyboardFocus {
 public:
  using Windows = std::map<int, std::unique_ptr<BoardWindow>>;

  KeyboardFocus(DisplayWay way, const Windows& windows, const WidgetPlaces& places)
      : windows_(windows), places_(places), previous_(way) {}

  /// Brings all boards to the front and focuses the first one in reading order. False if there is no board.
  bool begin();
  void next(int id, Turn turn);
  /// Sends the boards back and activates the window that was active before.
  void end();
  /// To be called when a board has gained or lost the focus. Once a window of another program has it, the boards go
  /// back.
  void activeChanged();

 private:
  void bringToFront();
  void sendBack();
  void focus(int id);
  bool anyIsActive() const;

  const Windows& windows_;
  const WidgetPlaces& places_;
  PreviousFocus previous_;
  bool inFront_ = false;
  std::optional<int> focused_;  ///< the board that was given the focus last
  bool awaited_ = false;        ///< it has not got the focus yet
};

}  // namespace desktop
