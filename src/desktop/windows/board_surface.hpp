// A window without a frame at the bottom of the desktop that shows one board. This creates, places and paints it, on
// X11, on a Wayland layer or as a plain Wayland window. Input is handled in board_window.hpp.
#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "desktop/glib/gobject.hpp"
#include "desktop/placement/geometry.hpp"
#include "desktop/windows/board_picture.hpp"
#include "desktop/windows/display_way.hpp"

namespace desktop {

/// Where a surface is: in the display's coordinates (`origin`), and relative to its monitor (`onMonitor`), as layers
/// need it. On a monitor at 1280,0 a board with `origin` 1300,20 has `onMonitor` 20,20.
struct SurfacePlace {
  GdkMonitor* monitor = nullptr;
  Size size;
  Point origin;
  Point onMonitor;
  bool operator==(const SurfacePlace&) const = default;
};

class BoardSurface {
 public:
  /// While a board is dragged, an image of it and an outline of the place where it would land are shown above all
  /// windows. Both take no input.
  enum class Role { board, image, outline };

  BoardSurface(DisplayWay way, Role role);
  ~BoardSurface();
  BoardSurface(const BoardSurface&) = delete;
  BoardSurface& operator=(const BoardSurface&) = delete;

  GtkWidget* widget() const { return window_; }

  /// The picture is scaled to the size given to `place`.
  void show(std::shared_ptr<BoardPicture> picture);
  void place(const SurfacePlace& place);
  void hide();
  /// Asks an X11 window manager again to show a board that it has not shown yet. A window manager that is still
  /// starting may ignore the first request.
  void askToBeShown();
  /// Requests the keyboard focus. `time` is that of the event that caused it, which window managers check.
  void activate(guint32 time);
  /// Puts the board in front of all windows, or back at the bottom. A layer in front gets the keyboard only by
  /// `takeKeyboard`, not by a click.
  enum class Depth { bottom, front };
  void setDepth(Depth depth);
  /// Takes the keyboard without a click, for a board in front, and shows the focus ring.
  void takeKeyboard();
  /// After `takeKeyboard`: lets other boards and windows have it.
  void releaseKeyboard();
  /// On the X server of a Wayland compositor: hands the keyboard to the window that had it before, which may be a
  /// Wayland client's and so be unknown here.
  void giveUpKeyboard();
  bool isActive() const { return gtk_window_is_active(GTK_WINDOW(window_)) != FALSE; }
  /// Sets the opacity with which the board is painted, 0 to 1.
  void fade(double opacity);

 private:
  gboolean draw(cairo_t* cairo);
  void drawFocus(cairo_t* cairo) const;
  void drawOutline(cairo_t* cairo) const;
  void path(cairo_t* cairo, double inset) const;
  void cutOut() const;
  void focusChanged(GParamSpec* property);
  void compositingChanged();
  void mapAgain();
  bool composed() const;
  void shape();
  void repaint();
  gboolean shown(GdkEvent* event);
  gboolean closeAsked(GdkEvent* event);

  DisplayWay way_;
  Role role_;
  GtkWidget* window_;
  std::shared_ptr<BoardPicture> picture_;  // shared with the copies of the same size
  SurfacePlace place_;
  OwnedObject<GdkMonitor> monitor_;  // a reference, so that no other monitor can get the same address
  bool mapped_ = false;              ///< the window manager has shown the window
  double opacity_ = 1;
};

}  // namespace desktop
