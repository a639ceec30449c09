// A window without a frame at the bottom of the desktop that shows one board: made, put in its place and painted, each
// in the way of the display. What a person does with it is board_window.hpp's.
#pragma once

#include <memory>

#include <gtk/gtk.h>

#include "desktop/placement/geometry.hpp"
#include "desktop/windows/board_picture.hpp"
#include "desktop/windows/display_way.hpp"
#include "desktop/windows/gobject.hpp"

namespace desktop {

/// Where a surface goes: in the display's coordinates, and relative to its monitor, which layers ask for.
struct SurfacePlace {
  GdkMonitor* monitor = nullptr;
  Size size;
  Point origin;
  Point onMonitor;
  bool operator==(const SurfacePlace&) const = default;
};

class BoardSurface {
 public:
  /// An image follows a board that is dragged: above everything, and nothing can be done with it.
  enum class Role { board, image };

  BoardSurface(DisplayWay way, Role role);
  ~BoardSurface();
  BoardSurface(const BoardSurface&) = delete;
  BoardSurface& operator=(const BoardSurface&) = delete;

  GtkWidget* widget() const { return window_; }

  /// The picture is drawn as large as the surface's place says.
  void show(std::shared_ptr<BoardPicture> picture);
  void place(const SurfacePlace& place);
  void hide();
  /// Asks an X11 window manager once more for a board that it has not shown yet: one that is starting may answer
  /// nothing until the next request.
  void askToBeShown();
  /// Gives it the keyboard, at a person's press at that time of the display.
  void activate(guint32 time);
  /// How opaque the board is painted.
  void fade(double opacity);

 private:
  gboolean draw(cairo_t* cairo);
  void drawFocus(cairo_t* cairo) const;
  void focusChanged(GParamSpec* property);
  void compositingChanged();
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
  OwnedObject<GdkMonitor> monitor_;  // kept: another one at a gone one's address would pass for it
  bool mapped_ = false;              ///< the window manager has shown it
  double opacity_ = 1;
};

}  // namespace desktop
