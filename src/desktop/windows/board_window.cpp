#include "desktop/windows/board_window.hpp"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "desktop/glib/gobject.hpp"
#include "desktop/windows/board_area.hpp"
#include "desktop/windows/board_menu.hpp"
#include "desktop/windows/fixed_boards.hpp"

namespace desktop {
namespace {

constexpr double draggedOpacity = 0.4;  ///< of the board while its image follows the pointer

/// The direction of an arrow key.
std::optional<Direction> directionOf(guint key) {
  switch (key) {
    case GDK_KEY_Left:
    case GDK_KEY_KP_Left:
      return Direction::left;
    case GDK_KEY_Right:
    case GDK_KEY_KP_Right:
      return Direction::right;
    case GDK_KEY_Up:
    case GDK_KEY_KP_Up:
      return Direction::up;
    case GDK_KEY_Down:
    case GDK_KEY_KP_Down:
      return Direction::down;
    default:
      return std::nullopt;
  }
}

/// Tab and Shift+Tab, which most keyboards report as a key of its own.
std::optional<Turn> turnOf(guint key, guint modifiers) {
  if (key == GDK_KEY_ISO_Left_Tab) return Turn::backward;
  if (key != GDK_KEY_Tab && key != GDK_KEY_KP_Tab) return std::nullopt;
  if (modifiers == 0) return Turn::forward;
  return modifiers == GDK_SHIFT_MASK ? std::optional(Turn::backward) : std::nullopt;
}

/// Whether a button of the pointer is held, in whatever window.
bool pointerIsPressed() {
  GdkDevice* const pointer = gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_display_get_default()));
  GdkModifierType state{};
  gdk_window_get_device_position(gdk_screen_get_root_window(gdk_screen_get_default()), pointer, nullptr, nullptr,
                                 &state);
  constexpr unsigned buttons = GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK;
  return (static_cast<unsigned>(state) & buttons) != 0;
}

/// The size that the key gives a board.
std::optional<protocol::WidgetFamily> familyOf(guint key) {
  switch (key) {
    case GDK_KEY_1:
    case GDK_KEY_KP_1:
      return protocol::WidgetFamily::systemSmall;
    case GDK_KEY_2:
    case GDK_KEY_KP_2:
      return protocol::WidgetFamily::systemMedium;
    case GDK_KEY_3:
    case GDK_KEY_KP_3:
      return protocol::WidgetFamily::systemLarge;
    default:
      return std::nullopt;
  }
}

/// Whether the key moves, resizes or removes a board. A locked board ignores such keys.
bool changesPlaces(guint key) {
  return directionOf(key) || familyOf(key) || key == GDK_KEY_Delete || key == GDK_KEY_KP_Delete;
}

/// Most keyboards need Shift for the plus.
bool isControl(guint modifiers, guint key) {
  return modifiers == GDK_CONTROL_MASK || (modifiers == (GDK_CONTROL_MASK | GDK_SHIFT_MASK) && key == GDK_KEY_plus);
}

}  // namespace

BoardWindow::BoardWindow(int id, DisplayWay way, BoardCommands& commands, const Texts& texts)
    : id_(id),
      way_(way),
      commands_(commands),
      texts_(texts),
      surface_(way, BoardSurface::Role::board),
      area_(newBoardArea()) {
  GtkWidget* const window = surface_.widget();
  gtk_widget_add_events(window, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK | GDK_BUTTON1_MOTION_MASK);
  connect<&BoardWindow::pressed>(window, "button-press-event", this);
  connect<&BoardWindow::moved>(window, "motion-notify-event", this);
  connect<&BoardWindow::released>(window, "button-release-event", this);
  connect<&BoardWindow::configured>(window, "configure-event", this);
  connect<&BoardWindow::keyPressed>(window, "key-press-event", this);
  connect<&BoardWindow::menuKeyPressed>(window, "popup-menu", this);
  connect<&BoardWindow::activeChanged>(window, "notify::is-active", this);
  gtk_widget_set_has_tooltip(window, TRUE);
  connect<&BoardWindow::tooltipAsked>(window, "query-tooltip", this);
  connect<&BoardWindow::openAsked>(area_, "open-asked", this);
  connect<&BoardWindow::menuAsked>(area_, "menu-asked", this);
  gtk_container_add(GTK_CONTAINER(window), area_);
  gtk_widget_show(area_);
  gtk_widget_grab_focus(area_);
}

BoardWindow::~BoardWindow() {
  forgetMove();
  g_signal_handlers_disconnect_by_data(surface_.widget(), this);
  g_signal_handlers_disconnect_by_data(area_, this);
}

void BoardWindow::show(std::shared_ptr<BoardPicture> picture, const std::string& widgetName) {
  picture_ = std::move(picture);
  surface_.show(picture_);
  gtk_window_set_title(GTK_WINDOW(surface_.widget()), widgetName.c_str());
  atk_object_set_name(gtk_widget_get_accessible(surface_.widget()), widgetName.c_str());
  const bool redacted = picture_->content().redaction == render::Redaction::placeholder;
  describeArea(area_, {.name = widgetName,
                       .description = redacted ? texts_.loading : picture_->aloud(),
                       .rows = picture_->rows(),
                       .width = picture_->width(),
                       .openAction = texts_.openAction,
                       .menuAction = texts_.menuAction});
}

void BoardWindow::bringToFront() {
  inFront_ = true;
  updateDepth();
}

void BoardWindow::sendBack() {
  inFront_ = false;
  updateDepth();
}

void BoardWindow::keepAboveShownDesktop(bool shown) {
  desktopShown_ = shown;
  // A board in front stays there, with the keyboard.
  if (!inFront_) updateDepth();
}

void BoardWindow::updateDepth() {
  surface_.setDepth(inFront_ || desktopShown_ ? BoardSurface::Depth::front : BoardSurface::Depth::bottom);
}

void BoardWindow::activeChanged(GParamSpec* /*property*/) { commands_.activeChanged(); }

void BoardWindow::offerUndo(std::function<void()> undo) {
  endDrag();
  undo_ = std::move(undo);
  auto* const window = GTK_CONTAINER(surface_.widget());
  BoardLook look = picture_->look();
  look.backdrop = render::Backdrop::solid;
  surface_.show(std::make_shared<BoardPicture>(picture_->family(), emptyBoard(), std::move(look)));
  g_object_ref(area_);
  removedArea_.reset(area_);
  gtk_container_remove(window, area_);
  undoButton_ = gtk_button_new_with_mnemonic(texts_.undoRemoval);
  gtk_widget_set_halign(undoButton_, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(undoButton_, GTK_ALIGN_CENTER);
  connect<&BoardWindow::undoClicked>(undoButton_, "clicked", this);
  gtk_container_add(window, undoButton_);
  gtk_widget_show(undoButton_);
  gtk_widget_grab_focus(undoButton_);
  gtk_window_set_title(GTK_WINDOW(window), gtk_label_get_text(GTK_LABEL(gtk_bin_get_child(GTK_BIN(undoButton_)))));
}

void BoardWindow::withdrawUndo() {
  if (undoButton_ == nullptr) return;
  gtk_widget_destroy(std::exchange(undoButton_, nullptr));
  gtk_container_add(GTK_CONTAINER(surface_.widget()), area_);
  removedArea_.reset();
  gtk_widget_grab_focus(area_);
}

void BoardWindow::setTooltip(const std::string& text) {
  tooltip_ = text;
  gtk_widget_trigger_tooltip_query(surface_.widget());
}

/// Over the board's header alone, where it hides nothing of the day.
gboolean BoardWindow::tooltipAsked(gint /*x*/, gint y, gboolean byKeyboard, GtkTooltip* tooltip) {
  constexpr double header = 0.15;  // of the height
  if (undoButton_ != nullptr || (byKeyboard == FALSE && y > header * place_.size.height)) return FALSE;
  gtk_tooltip_set_text(tooltip, tooltip_.c_str());
  return TRUE;
}

void BoardWindow::place(const SurfacePlace& place) {
  place_ = place;
  surface_.place(place);
}

/// A layer is told pointer positions relative to itself only, so they are converted with the place at which it was
/// pressed. This requires that the layer does not move during a drag.
Point BoardWindow::pointerAt(double x, double y, double rootX, double rootY) const {
  if (way_ != DisplayWay::layerShell)
    return {static_cast<int>(std::lround(rootX)), static_cast<int>(std::lround(rootY))};
  return {place_.origin.x + static_cast<int>(std::lround(x)), place_.origin.y + static_cast<int>(std::lround(y))};
}

gboolean BoardWindow::pressed(GdkEventButton* event) {
  // The focus ring is for those who use the keyboard.
  gtk_window_set_focus_visible(GTK_WINDOW(surface_.widget()), FALSE);
  // Window managers do not focus docks by themselves.
  if (way_ == DisplayWay::x11) surface_.activate(event->time);
  if (undoButton_ != nullptr) return FALSE;
  if (gdk_event_triggers_context_menu(reinterpret_cast<GdkEvent*>(event)) != FALSE) {
    popUpBoardMenu(surface_.widget(), id_, commands_, texts_, reinterpret_cast<GdkEvent*>(event));
    return TRUE;
  }
  const bool isRepeated = event->type == GDK_2BUTTON_PRESS || event->type == GDK_3BUTTON_PRESS;
  if (isRepeated && drag_ && opened_) drag_->isClick = false;
  if (event->type != GDK_BUTTON_PRESS || event->button != GDK_BUTTON_PRIMARY) return FALSE;
  drag_ = Drag{.pointer = pointerAt(event->x, event->y, event->x_root, event->y_root), .origin = place_.origin};
  return TRUE;
}

gboolean BoardWindow::moved(GdkEventMotion* event) {
  if (!drag_) return FALSE;
  const Point now = pointerAt(event->x, event->y, event->x_root, event->y_root);
  if (!drag_->moving &&
      gtk_drag_check_threshold(surface_.widget(), drag_->pointer.x, drag_->pointer.y, now.x, now.y) == FALSE) {
    return TRUE;
  }
  if (commands_.locked()) {
    drag_->isClick = false;
    return TRUE;
  }
  drag_->moving = true;
  const bool freely = (event->state & static_cast<guint>(GDK_SHIFT_MASK)) != 0;
  dragTo({drag_->origin.x + now.x - drag_->pointer.x, drag_->origin.y + now.y - drag_->pointer.y},
         freely ? Snapping::off : Snapping::on);
  return TRUE;
}

void BoardWindow::dragTo(Point origin, Snapping snapping) {
  if (!drag_) return;
  drag_->landing = commands_.landing(id_, origin, snapping);
  if (way_ == DisplayWay::layerShell) {
    showImages(origin);
  } else {
    SurfacePlace place = place_;
    place.origin = origin;
    surface_.place(place);
  }
  // Elsewhere the compositor puts windows where it likes.
  if (way_ != DisplayWay::plain) showOutline();
}

void BoardWindow::showImages(Point origin) {
  surface_.fade(draggedOpacity);
  const auto places = commands_.placesAt(id_, origin);
  std::erase_if(images_, [&](const auto& image) {
    return std::ranges::find(places, image.first, &SurfacePlace::monitor) == places.end();
  });
  for (const auto& place : places) {
    auto& image = images_[place.monitor];
    if (!image) {
      image = std::make_unique<BoardSurface>(way_, BoardSurface::Role::image);
      image->show(picture_);
    }
    image->place(place);
  }
}

void BoardWindow::showOutline() {
  if (!drag_) return;
  const auto places = commands_.placesAt(id_, drag_->landing);
  if (places.empty()) return;
  if (!outline_) {
    outline_ = std::make_unique<BoardSurface>(way_, BoardSurface::Role::outline);
    outline_->show(picture_);
  }
  outline_->place(places.front());
}

gboolean BoardWindow::released(GdkEventButton* event) {
  if (!drag_ || event->button != GDK_BUTTON_PRIMARY) return FALSE;
  const Drag ended = *drag_;
  endDrag();
  opened_ = opened_ && !ended.moving;
  if (ended.moving) {
    commands_.moveTo(id_, ended.landing);
  } else if (ended.isClick) {
    opened_ = true;
    commands_.open(event->time);
  }
  return TRUE;
}

void BoardWindow::endDrag() {
  drag_.reset();
  images_.clear();
  outline_.reset();
  surface_.fade(1);
}

/// Window managers that let a person move docks (Alt+drag) only report where the window is. Moves without a pressed
/// button are the window manager's own, for example after a change of the screen, and the board's place is kept.
gboolean BoardWindow::configured(GdkEventConfigure* event) {
  if (way_ != DisplayWay::x11 || drag_) return FALSE;
  const Point now{event->x, event->y};
  if (now == place_.origin) {
    forgetMove();
  } else if (pointerIsPressed()) {
    movedTo_ = now;
    if (moveTimer_ == 0) startMoveTimer();
  }
  return FALSE;
}

void BoardWindow::startMoveTimer() {
  constexpr guint pause = 200;  // milliseconds
  const auto ended = [](gpointer self) noexcept -> gboolean {
    auto& window = *static_cast<BoardWindow*>(self);
    if (pointerIsPressed()) return G_SOURCE_CONTINUE;
    window.moveTimer_ = 0;
    if (const auto place = std::exchange(window.movedTo_, std::nullopt)) window.commands_.moveTo(window.id_, *place);
    return G_SOURCE_REMOVE;
  };
  moveTimer_ = g_timeout_add(pause, ended, this);
}

void BoardWindow::forgetMove() {
  movedTo_.reset();
  if (const auto timer = std::exchange(moveTimer_, 0U); timer != 0) g_source_remove(timer);
}

gboolean BoardWindow::keyPressed(GdkEventKey* event) {
  const guint key = gdk_keyval_to_lower(event->keyval);  // Caps Lock may be on
  const guint modifiers = event->state & static_cast<guint>(gtk_accelerator_get_default_mod_mask());
  if (drag_ && key == GDK_KEY_Escape) {
    endDrag();
    surface_.place(place_);
    return TRUE;
  }
  if (const auto turn = turnOf(key, modifiers)) {
    commands_.focusNext(id_, *turn);
    return TRUE;
  }
  // Other keys are the undo button's.
  if (undoButton_ != nullptr && key != GDK_KEY_z && key != GDK_KEY_Escape) return FALSE;
  if (isControl(modifiers, key)) return controlKeyPressed(key);
  if (modifiers != 0 || (commands_.locked() && changesPlaces(key))) return FALSE;
  if (const auto direction = directionOf(key)) {
    commands_.step(id_, *direction);
    return TRUE;
  }
  if (const auto family = familyOf(key)) {
    commands_.resize(id_, *family);
    return TRUE;
  }
  switch (key) {
    case GDK_KEY_Delete:
    case GDK_KEY_KP_Delete:
      commands_.remove(id_);
      return TRUE;
    case GDK_KEY_Insert:
    case GDK_KEY_KP_Insert:
      commands_.openGallery();
      return TRUE;
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
      commands_.open(event->time);
      return TRUE;
    case GDK_KEY_space:
      return menuKeyPressed();
    case GDK_KEY_Escape:
      commands_.leaveKeyboard();
      return TRUE;
    case GDK_KEY_F5:
      commands_.reload();
      return TRUE;
    default:
      return FALSE;
  }
}

gboolean BoardWindow::controlKeyPressed(guint key) {
  const auto zoomTo = [this](int percent) {
    if (!commands_.locked()) commands_.zoom(id_, percent);
    return TRUE;
  };
  const MenuState state = commands_.menuState(id_);
  switch (key) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add: {
      const auto* const next = std::ranges::upper_bound(zoomSteps, state.zoom);
      return zoomTo(next == zoomSteps.end() ? state.zoom : *next);
    }
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract: {
      const auto* const from = std::ranges::lower_bound(zoomSteps, state.zoom);
      return zoomTo(from == zoomSteps.begin() ? state.zoom : *std::prev(from));
    }
    case GDK_KEY_0:
    case GDK_KEY_KP_0:
      return zoomTo(100);
    case GDK_KEY_l: {
      DesktopSettings toggled = state.settings;
      toggled.locked = !toggled.locked;
      commands_.choose(toggled);
      return TRUE;
    }
    case GDK_KEY_z:
      commands_.undoRemoval();
      return TRUE;
    case GDK_KEY_q:
      commands_.quit();
      return TRUE;
    default:
      return FALSE;
  }
}

gboolean BoardWindow::menuKeyPressed() {
  if (undoButton_ != nullptr) return FALSE;
  popUpBoardMenu(surface_.widget(), id_, commands_, texts_, nullptr);
  return TRUE;
}

}  // namespace desktop
