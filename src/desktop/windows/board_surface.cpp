#include "desktop/windows/board_surface.hpp"

#include <cmath>
#include <cstdlib>
#include <utility>

#include <gdk/gdkwayland.h>
#include <gdk/gdkx.h>
#include <gtk-layer-shell.h>
#include <wayland-client.h>

#include "desktop/placement/place.hpp"
#include "desktop/windows/x_focus.hpp"
#include "render/colour/palette.hpp"
#include "render/picture/shape.hpp"
#include "render/picture/surface.hpp"

namespace desktop {
namespace {

GtkWindow* asWindow(GtkWidget* widget) { return GTK_WINDOW(widget); }

constexpr double outlineWidth = 4;

void setColour(cairo_t* cairo, const render::Colour& colour) {
  cairo_set_source_rgb(cairo, colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0);
}

/// The outline of a drag on X11 is not managed, so that it is where it is put at once, and above everything.
GtkWindowType windowType(DisplayWay way, BoardSurface::Role role) {
  return way == DisplayWay::x11 && role == BoardSurface::Role::outline ? GTK_WINDOW_POPUP : GTK_WINDOW_TOPLEVEL;
}

/// The part of the hints that a window manager drops when it unmanages the window.
void describeState(GtkWindow* window) {
  gtk_window_set_keep_below(window, TRUE);
  gtk_window_stick(window);
}

/// Sets the window manager hints. "Show desktop" leaves docks visible, above a file manager's icons; keep-below puts
/// them below all other windows.
void describeToManager(GtkWindow* window) {
  gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DOCK);
  gtk_window_set_decorated(window, FALSE);
  gtk_window_set_resizable(window, FALSE);
  gtk_window_set_skip_taskbar_hint(window, TRUE);
  gtk_window_set_skip_pager_hint(window, TRUE);
  gtk_window_set_focus_on_map(window, FALSE);
  describeState(window);
}

/// How a layer gets the keyboard while it is at the bottom: by a click, where the compositor offers that.
GtkLayerShellKeyboardMode restingKeyboardMode() {
  constexpr guint onDemandSince = 4;
  return gtk_layer_get_protocol_version() >= onDemandSince ? GTK_LAYER_SHELL_KEYBOARD_MODE_ON_DEMAND
                                                           : GTK_LAYER_SHELL_KEYBOARD_MODE_NONE;
}

void makeLayer(GtkWindow* window, BoardSurface::Role role) {
  const bool isBoard = role == BoardSurface::Role::board;
  gtk_layer_init_for_window(window);
  gtk_layer_set_namespace(window, "vamba-widget");
  // The order of surfaces within one layer is up to the compositor, so an image needs a layer above the boards'.
  gtk_layer_set_layer(window, isBoard ? GTK_LAYER_SHELL_LAYER_BOTTOM : GTK_LAYER_SHELL_LAYER_OVERLAY);
  if (isBoard) gtk_layer_set_keyboard_mode(window, restingKeyboardMode());
}

/// Anchors the layer to the nearest corner of its monitor. When a panel reserves room at an edge, the compositor then
/// moves only the boards anchored to that edge.
void placeLayer(GtkWindow* window, const SurfacePlace& place) {
  GdkRectangle monitor{};
  gdk_monitor_get_geometry(place.monitor, &monitor);
  const Monitor area{.identity = {}, .area = {0, 0, monitor.width, monitor.height}};
  const auto [identity, corner, inset] = placeOf(rectAt(place.onMonitor, place.size), area);
  const auto keep = [window](GtkLayerShellEdge edge, bool kept, int distance) {
    gtk_layer_set_anchor(window, edge, kept ? TRUE : FALSE);
    gtk_layer_set_margin(window, edge, kept ? distance : 0);
  };
  keep(GTK_LAYER_SHELL_EDGE_LEFT, !isRight(corner), inset.x);
  keep(GTK_LAYER_SHELL_EDGE_RIGHT, isRight(corner), inset.x);
  keep(GTK_LAYER_SHELL_EDGE_TOP, !isBottom(corner), inset.y);
  keep(GTK_LAYER_SHELL_EDGE_BOTTOM, isBottom(corner), inset.y);
}

/// Commits at once. The toolkit would wait for the next frame, which a compositor does not request for hidden surfaces.
void commit(GtkWidget* window) {
  GdkWindow* const mapped = gtk_widget_get_window(window);
  if (mapped == nullptr || gtk_widget_get_mapped(window) == FALSE) return;
  if (wl_surface* const surface = gdk_wayland_window_get_wl_surface(mapped)) wl_surface_commit(surface);
}

}  // namespace

BoardSurface::BoardSurface(DisplayWay way, Role role)
    : way_(way), role_(role), window_(gtk_window_new(windowType(way, role))) {
  gtk_widget_set_app_paintable(window_, TRUE);
  if (GdkVisual* const visual = gdk_screen_get_rgba_visual(gtk_widget_get_screen(window_)); visual != nullptr) {
    gtk_widget_set_visual(window_, visual);
  }
  describeToManager(asWindow(window_));
  // Compositing managers draw shadows below docks.
  if (role != Role::board) gtk_window_set_type_hint(asWindow(window_), GDK_WINDOW_TYPE_HINT_DND);
  // The toolkit shows the focus from the start; a board shows it only after the keyboard was used.
  gtk_window_set_focus_visible(asWindow(window_), FALSE);
  if (way == DisplayWay::layerShell) makeLayer(asWindow(window_), role);
  if (role != Role::board) gtk_window_set_accept_focus(asWindow(window_), FALSE);
  connect<&BoardSurface::draw>(window_, "draw", this);
  connect<&BoardSurface::shown>(window_, "map-event", this);
  connect<&BoardSurface::closeAsked>(window_, "delete-event", this);
  for (const char* signal : {"notify::is-active", "notify::focus-visible"}) {
    connect<&BoardSurface::focusChanged>(window_, signal, this);
  }
  connect<&BoardSurface::compositingChanged>(window_, "composited-changed", this);
}

BoardSurface::~BoardSurface() { gtk_widget_destroy(window_); }

void BoardSurface::show(std::shared_ptr<BoardPicture> picture) {
  picture_ = std::move(picture);
  repaint();
}

void BoardSurface::place(const SurfacePlace& place) {
  const bool resized = place.size != place_.size;
  if (resized) gtk_widget_set_size_request(window_, place.size.width, place.size.height);
  if (way_ == DisplayWay::layerShell) {
    if (place.monitor != monitor_.get()) {
      gtk_layer_set_monitor(asWindow(window_), place.monitor);
      g_object_ref(place.monitor);
      monitor_.reset(place.monitor);
    }
    placeLayer(asWindow(window_), place);
    commit(window_);
  } else {
    gtk_window_move(asWindow(window_), place.origin.x, place.origin.y);
  }
  place_ = place;
  const bool visible = gtk_widget_get_visible(window_) != FALSE;
  if (!visible) gtk_widget_show(window_);
  if (resized || !visible) shape();
  if (resized) repaint();
}

void BoardSurface::askToBeShown() {
  GdkWindow* const mapped = gtk_widget_get_window(window_);
  // The toolkit asks the server each time, whatever it believes.
  if (way_ == DisplayWay::x11 && mapped != nullptr && !mapped_) gdk_window_show_unraised(mapped);
}

void BoardSurface::hide() { gtk_widget_hide(window_); }

void BoardSurface::activate(guint32 time) {
  GdkWindow* const mapped = gtk_widget_get_window(window_);
  if (way_ == DisplayWay::x11 && mapped != nullptr && time != GDK_CURRENT_TIME) {
    // KWin refuses the toolkit's own request for a dock, and stacks docks that are kept below among other windows.
    focusOnX(mapped, time);
    gdk_window_lower(mapped);
    return;
  }
  gtk_window_present_with_time(asWindow(window_), time);
}

void BoardSurface::setDepth(Depth depth) {
  const bool front = depth == Depth::front;
  if (way_ == DisplayWay::layerShell) {
    // Some compositors give the keyboard to any layer above the windows that may have it, and take it back only from
    // one that may not have it any more.
    releaseKeyboard();
    gtk_layer_set_layer(asWindow(window_), front ? GTK_LAYER_SHELL_LAYER_TOP : GTK_LAYER_SHELL_LAYER_BOTTOM);
    if (!front) gtk_layer_set_keyboard_mode(asWindow(window_), restingKeyboardMode());
    commit(window_);
    // KWin 5.27 ignores a change of the layer, and leaves the keyboard with a layer that gives it up.
    if (compositorIsKwin()) mapAgain();
    return;
  }
  gtk_window_set_keep_below(asWindow(window_), front ? FALSE : TRUE);
  gtk_window_set_keep_above(asWindow(window_), front ? TRUE : FALSE);
  // Some window managers keep the place in the stack otherwise.
  if (GdkWindow* const mapped = gtk_widget_get_window(window_); mapped != nullptr && !front) gdk_window_lower(mapped);
}

void BoardSurface::takeKeyboard() {
  gtk_window_set_focus_visible(asWindow(window_), TRUE);
  if (way_ == DisplayWay::layerShell) {
    gtk_layer_set_keyboard_mode(asWindow(window_), GTK_LAYER_SHELL_KEYBOARD_MODE_EXCLUSIVE);
    commit(window_);
    return;
  }
  GdkWindow* const mapped = gtk_widget_get_window(window_);
  if (way_ == DisplayWay::x11 && mapped != nullptr) {
    focusOnX(mapped, gdk_x11_get_server_time(mapped));
  } else {
    activate(GDK_CURRENT_TIME);
  }
}

void BoardSurface::releaseKeyboard() {
  if (way_ != DisplayWay::layerShell) return;
  gtk_layer_set_keyboard_mode(asWindow(window_), GTK_LAYER_SHELL_KEYBOARD_MODE_NONE);
  commit(window_);
}

void BoardSurface::giveUpKeyboard() {
  if (way_ == DisplayWay::x11 && std::getenv("WAYLAND_DISPLAY") != nullptr) mapAgain();
}

/// Takes the window away and shows it again. Compositors then give its keyboard to the window that had it before.
void BoardSurface::mapAgain() {
  if (gtk_widget_get_mapped(window_) == FALSE) return;
  gtk_widget_hide(window_);
  if (way_ == DisplayWay::x11) gtk_window_move(asWindow(window_), place_.origin.x, place_.origin.y);
  gtk_widget_show(window_);
}

void BoardSurface::fade(double opacity) {
  if (std::exchange(opacity_, opacity) != opacity) repaint();
}

bool BoardSurface::composed() const { return gdk_screen_is_composited(gtk_widget_get_screen(window_)) != FALSE; }

void BoardSurface::repaint() { gtk_widget_queue_draw(window_); }

gboolean BoardSurface::draw(cairo_t* cairo) {
  if (!picture_) return TRUE;
  cairo_save(cairo);
  const bool transparent = composed();
  const auto& background = render::palette(picture_->look().appearance).background;
  cairo_set_source_rgba(cairo, background.red / 255.0, background.green / 255.0, background.blue / 255.0,
                        transparent ? 0 : 1);
  cairo_set_operator(cairo, CAIRO_OPERATOR_SOURCE);
  cairo_paint(cairo);
  cairo_set_operator(cairo, CAIRO_OPERATOR_OVER);
  if (role_ == Role::outline) {
    drawOutline(cairo);
    cairo_restore(cairo);
    return FALSE;
  }
  if (opacity_ < 1) cairo_push_group(cairo);
  picture_->paint(cairo, place_.size, gtk_widget_get_scale_factor(window_),
                  transparent ? picture_->look().backdrop : render::Backdrop::solid);
  if (opacity_ < 1) {
    cairo_pop_group_to_source(cairo);
    cairo_paint_with_alpha(cairo, opacity_);
  }
  drawFocus(cairo);
  cairo_restore(cairo);
  return FALSE;
}

/// Adds the board's outline, this far within its edge.
void BoardSurface::path(cairo_t* cairo, double inset) const {
  const auto [width, height] = place_.size;
  const render::Rect rect{inset, inset, width - 2 * inset, height - 2 * inset};
  cairo_new_path(cairo);
  for (const auto& corner : render::continuousCorners(rect, picture_->radiusAt(place_.size) - inset)) {
    cairo_line_to(cairo, corner.start.x, corner.start.y);
    cairo_curve_to(cairo, corner.firstControl.x, corner.firstControl.y, corner.secondControl.x, corner.secondControl.y,
                   corner.end.x, corner.end.y);
  }
  cairo_close_path(cairo);
}

/// Draws the focus ring within the edge. It is visible only after the keyboard was used.
void BoardSurface::drawFocus(cairo_t* cairo) const {
  GtkWindow* const window = asWindow(window_);
  if (gtk_window_is_active(window) == FALSE || gtk_window_get_focus_visible(window) == FALSE) return;
  constexpr double width = 2;
  const auto& look = picture_->look();
  setColour(cairo, render::palette(look.appearance, look.accent).tint);
  cairo_set_line_width(cairo, width);
  path(cairo, width);
  cairo_stroke(cairo);
}

/// Draws a line in the tint between two in the background's colour, which is seen on any picture.
void BoardSurface::drawOutline(cairo_t* cairo) const {
  const auto& look = picture_->look();
  const auto colours = render::palette(look.appearance, look.accent);
  setColour(cairo, colours.background);
  cairo_set_line_width(cairo, outlineWidth);
  path(cairo, outlineWidth / 2);
  cairo_stroke_preserve(cairo);
  setColour(cairo, colours.tint);
  cairo_set_line_width(cairo, outlineWidth / 2);
  cairo_stroke(cairo);
}

void BoardSurface::focusChanged(GParamSpec* /*property*/) { repaint(); }

void BoardSurface::compositingChanged() {
  shape();
  repaint();
}

/// Without a compositing manager there is no transparency, so the window's shape is cut out.
void BoardSurface::shape() {
  if (role_ != Role::board) {
    cairo_region_t* const nowhere = cairo_region_create();
    gtk_widget_input_shape_combine_region(window_, nowhere);
    cairo_region_destroy(nowhere);
  }
  if (!picture_ || way_ != DisplayWay::x11) return;
  if (composed()) {
    gtk_widget_shape_combine_region(window_, nullptr);
  } else {
    cutOut();
  }
}

void BoardSurface::cutOut() const {
  const render::OwnedSurface mask(cairo_image_surface_create(CAIRO_FORMAT_A1, place_.size.width, place_.size.height));
  const render::OwnedCairo painting(cairo_create(mask.get()));
  cairo_t* const cairo = painting.get();
  if (role_ == Role::outline) {
    cairo_set_line_width(cairo, outlineWidth);
    path(cairo, outlineWidth / 2);
    cairo_stroke(cairo);
  } else {
    path(cairo, 0);
    cairo_fill(cairo);
  }
  cairo_surface_flush(mask.get());
  cairo_region_t* const region = gdk_cairo_region_create_from_surface(mask.get());
  gtk_widget_shape_combine_region(window_, region);
  cairo_region_destroy(region);
}

gboolean BoardSurface::shown(GdkEvent* /*event*/) {
  // The window manager may have dropped the state of the window before it was mapped again.
  if (std::exchange(mapped_, true) && way_ == DisplayWay::x11) describeState(asWindow(window_));
  return FALSE;
}

/// A board is only destroyed when its copy is removed. Requests to close it by a window manager are ignored.
gboolean BoardSurface::closeAsked(GdkEvent* /*event*/) { return TRUE; }

}  // namespace desktop
