#include "desktop/program/keyboard_focus.hpp"

#include <algorithm>

#include "desktop/program/main_loop.hpp"

namespace desktop {

bool KeyboardFocus::begin() {
  const auto order = places_.readingOrder();
  if (order.empty()) return false;
  bringToFront();
  focus(order.front());
  return true;
}

void KeyboardFocus::next(int id, Turn turn) {
  const auto order = places_.readingOrder();
  if (order.empty()) return;
  // A board that was only clicked is at the bottom, and the next one may be covered.
  bringToFront();
  const auto found = std::ranges::find(order, id);
  if (found == order.end()) return focus(order.front());
  const auto count = order.size();
  const auto index = static_cast<std::size_t>(found - order.begin());
  focus(order[(index + (turn == Turn::forward ? 1 : count - 1)) % count]);
}

void KeyboardFocus::end() {
  if (!inFront_) return;
  sendBack();
  if (previous_.restore(gtk_get_current_event_time())) return;
  for (auto* const window : allWindows_()) {
    if (window->isActive()) window->giveUpKeyboard();
  }
}

void KeyboardFocus::makeWay() {
  if (inFront_) sendBack();
}

void KeyboardFocus::activeChanged() {
  if (!inFront_) return;
  if (anyIsActive()) {
    awaited_ = false;
    return;
  }
  // The focus goes from one board to the next by way of none, and menus take it for a while.
  MainLoop::postWhenIdle([this] {
    if (inFront_ && !awaited_ && !anyIsActive() && gtk_grab_get_current() == nullptr) sendBack();
  });
}

void KeyboardFocus::bringToFront() {
  if (inFront_) return;
  // A board that was clicked is active: the window that was remembered before may have been left long ago.
  if (anyIsActive()) {
    previous_.forget();
  } else {
    previous_.remember();
  }
  inFront_ = true;
  for (auto* const window : allWindows_()) window->bringToFront();
}

void KeyboardFocus::sendBack() {
  inFront_ = false;
  awaited_ = false;
  for (auto* const window : allWindows_()) window->sendBack();
}

void KeyboardFocus::focus(int id) {
  const auto found = windows_.find(id);
  if (found == windows_.end() || !found->second) return;
  BoardWindow& focused = *found->second;
  awaited_ = !focused.isActive();
  focused.focus();
  for (auto* const window : allWindows_()) {
    if (window != &focused) window->releaseFocus();
  }
}

bool KeyboardFocus::anyIsActive() const { return std::ranges::any_of(allWindows_(), &BoardWindow::isActive); }

}  // namespace desktop
