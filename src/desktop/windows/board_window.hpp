// The window of one placed copy of the widget. It handles the pointer, the keyboard and the menu, and describes the
// board to screen readers. Drawing and stacking are board_surface.hpp's.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <gtk/gtk.h>

#include "desktop/texts/texts.hpp"
#include "desktop/windows/board_commands.hpp"
#include "desktop/windows/board_picture.hpp"
#include "desktop/windows/board_surface.hpp"

namespace desktop {

class BoardWindow {
 public:
  BoardWindow(int id, DisplayWay way, BoardCommands& commands, const Texts& texts);
  ~BoardWindow();
  BoardWindow(const BoardWindow&) = delete;
  BoardWindow& operator=(const BoardWindow&) = delete;

  void show(std::shared_ptr<BoardPicture> picture, const std::string& widgetName);
  void place(const SurfacePlace& place);
  void setTooltip(const std::string& text);
  void hide() { surface_.hide(); }

  /// Shows a button in place of the board, which keeps the keyboard. The button calls `undo`.
  void offerUndo(std::function<void()> undo);
  /// Shows the board again.
  void withdrawUndo();
  void askToBeShown() { surface_.askToBeShown(); }

  void bringToFront();
  void sendBack();
  /// Keeps the board visible while the compositor shows the desktop by raising it.
  void keepAboveShownDesktop(bool shown);
  /// Takes the keyboard focus. The board has to be in front.
  void focus() { surface_.takeKeyboard(); }
  void releaseFocus() { surface_.releaseKeyboard(); }
  /// For a board that is sent back where no other window can be given the focus.
  void giveUpKeyboard() { surface_.giveUpKeyboard(); }
  bool isActive() const { return surface_.isActive(); }

 private:
  /// A drag in the display's coordinates.
  struct Drag {
    Point pointer;  ///< where it was pressed
    Point origin;   ///< of the board then
    bool moving = false;
    Point landing;  ///< where the board is placed if it is dropped now
    bool isClick = true;
  };

  gboolean pressed(GdkEventButton* event);
  gboolean moved(GdkEventMotion* event);
  gboolean released(GdkEventButton* event);
  gboolean configured(GdkEventConfigure* event);
  void startMoveTimer();
  void forgetMove();
  gboolean keyPressed(GdkEventKey* event);
  gboolean controlKeyPressed(guint key);
  gboolean menuKeyPressed();
  gboolean tooltipAsked(gint x, gint y, gboolean byKeyboard, GtkTooltip* tooltip);
  void openAsked() { commands_.open(GDK_CURRENT_TIME); }
  void menuAsked() { menuKeyPressed(); }
  void activeChanged(GParamSpec* property);
  void dragTo(Point origin, Snapping snapping);
  void showImages(Point origin);
  void showOutline();
  void undoClicked() { undo_(); }
  void endDrag();
  void updateDepth();
  Point pointerAt(double x, double y, double rootX, double rootY) const;

  int id_;
  DisplayWay way_;
  BoardCommands& commands_;
  const Texts& texts_;
  BoardSurface surface_;
  bool inFront_ = false;
  bool desktopShown_ = false;
  GtkWidget* area_;  ///< owned by the surface's window
  std::shared_ptr<BoardPicture> picture_;
  SurfacePlace place_;
  std::optional<Drag> drag_;
  std::string tooltip_;
  GtkWidget* undoButton_ = nullptr;  ///< while the copy is removed
  std::function<void()> undo_;
  OwnedObject<GtkWidget> removedArea_;  ///< `area_` while the button is in its place
  bool opened_ = false;  ///< the last press was a click: the further ones of a double click open nothing more
  /// Images of the board follow the pointer on Wayland, where the board's own window stays: one on each monitor that
  /// shows a part of it.
  std::map<GdkMonitor*, std::unique_ptr<BoardSurface>> images_;
  std::unique_ptr<BoardSurface> outline_;
  std::optional<Point> movedTo_;  ///< where a window manager has moved the window, until that is kept
  guint moveTimer_ = 0;
};

}  // namespace desktop
