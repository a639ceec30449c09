// The use of boards by keyboard alone: they come to the front, Tab goes from one to the next, Escape sends them back.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "desktop/placement/widget_places.hpp"
#include "desktop/windows/board_commands.hpp"
#include "desktop/windows/board_window.hpp"
#include "desktop/windows/x_focus.hpp"

namespace desktop {

class KeyboardFocus {
 public:
  using Windows = std::map<int, std::unique_ptr<BoardWindow>>;

  /// `windows` are those of the placed copies, by id. `allWindows` also returns those of removed copies that can still
  /// be brought back: they come to the front and go back with the others.
  KeyboardFocus(DisplayWay way, const Windows& windows, std::function<std::vector<BoardWindow*>()> allWindows,
                const WidgetPlaces& places)
      : windows_(windows), allWindows_(std::move(allWindows)), places_(places), previous_(way) {}

  /// Brings all boards to the front and focuses the first one in reading order. False if there is no board.
  bool begin();
  /// Focuses the board after or before this one in reading order. The first one comes after a removed board.
  void next(int id, Turn turn);
  /// Sends the boards back and activates the window that was active before.
  void end();
  /// Sends the boards back, and with them the keyboard, for a window that is about to open.
  void makeWay();
  /// To be called when a board has gained or lost the focus, or a window with the focus was destroyed. Once a window of
  /// another program has it, the boards go back.
  void activeChanged();

 private:
  void bringToFront();
  void sendBack();
  void focus(int id);
  bool anyIsActive() const;

  const Windows& windows_;
  std::function<std::vector<BoardWindow*>()> allWindows_;
  const WidgetPlaces& places_;
  PreviousFocus previous_;
  bool inFront_ = false;
  bool awaited_ = false;  ///< the board that was given the focus last has not got it yet
};

}  // namespace desktop
