// The commands that a placed copy of the widget offers by pointer, keyboard and menu.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "desktop/placement/desktop_state.hpp"
#include "desktop/placement/geometry.hpp"
#include "desktop/placement/snapping.hpp"
#include "desktop/texts/texts.hpp"
#include "desktop/windows/board_surface.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

enum class Turn { forward, backward };

/// The zooms that the menu offers and the keys go through, in percent.
inline constexpr std::array zoomSteps{80, 100, 125, 150};

/// What is known of a copy without asking the disk, for its menu and its keys.
struct MenuState {
  protocol::WidgetFamily family = protocol::WidgetFamily::systemMedium;
  int zoom = 100;        ///< in percent
  bool canOpen = false;  ///< the extension declares what a click opens
  ReloadTimes reloads;
  DesktopSettings settings;
  bool canUndoRemoval = false;
};

/// `id` is that of a placed copy. The copy and its window may be removed during a call.
class BoardCommands {
 public:
  virtual ~BoardCommands() = default;

  /// Where the copy is placed if it is dropped at `wanted`: it covers no other, whether or not it snaps.
  virtual Point landing(int id, Point wanted, Snapping snapping) = 0;
  /// The places of a copy with this origin on each monitor that shows a part of it.
  virtual std::vector<SurfacePlace> placesAt(int id, Point origin) = 0;
  virtual void moveTo(int id, Point origin) = 0;
  virtual void step(int id, Direction direction) = 0;
  virtual void resize(int id, protocol::WidgetFamily family) = 0;
  virtual void zoom(int id, int percent) = 0;
  /// Can be undone for ten seconds.
  virtual void remove(int id) = 0;
  /// Brings back the copy that was removed last.
  virtual void undoRemoval() = 0;
  virtual void openGallery() = 0;
  /// Opens what the widget is for. `time` is the display's time of the click or key.
  virtual void open(std::uint32_t time) = 0;
  virtual void reload() = 0;
  virtual void choose(const DesktopSettings& settings) = 0;
  virtual void startAtLogin(bool wanted) = 0;
  /// Reads the files that say so.
  virtual bool startsAtLogin() const = 0;
  virtual MenuState menuState(int id) const = 0;
  virtual bool locked() const = 0;
  virtual void quit() = 0;

  /// Focuses the board after or before this one in reading order, and after the last one the first.
  virtual void focusNext(int id, Turn turn) = 0;
  /// Ends the use by keyboard: boards that are in front of windows go back below them.
  virtual void leaveKeyboard() = 0;
  virtual void activeChanged() = 0;
};

}  // namespace desktop
