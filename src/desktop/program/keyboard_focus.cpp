#include "desktop/program/keyboard_focus.hpp"

#include <algorithm>
#include <utility>

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
  const auto found = std::ranges::find(order, id);
  if (found == order.end()) return;
  const auto count = order.size();
  const auto index = static_cast<std::size_t>(found - order.begin());
  // A board that was only clicked is at the bottom, and the next one may be covered.
  bringToFront();
  focus(order[(index + (turn == Turn::forward ? 1 : count - 1)) % count]);
}

void KeyboardFocus::end() {
  if (!inFront_) return;
  sendBack();
  if (previous_.restore(gtk_get_current_event_time())) return;
  for (const auto& [id, window] : windows_) {
    if (window && window->isActive()) window->giveUpKeyboard();
  }
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
  if (!anyIsActive()) previous_.remember();
  inFront_ = true;
  for (const auto& [id, window] : windows_) {
    if (window) window->bringToFront();
  }
}

void KeyboardFocus::sendBack() {
  inFront_ = false;
  awaited_ = false;
  focused_.reset();
  for (const auto& [id, window] : windows_) {
    if (window) window->sendBack();
  }
}

void KeyboardFocus::focus(int id) {
  const auto window = windows_.find(id);
  if (window == windows_.end() || !window->second) return;
  const auto before = std::exchange(focused_, id);
  awaited_ = !window->second->isActive();
  window->second->focus();
  if (!before || *before == id) return;
  if (const auto last = windows_.find(*before); last != windows_.end() && last->second) last->second->releaseFocus();
}

bool KeyboardFocus::anyIsActive() const {
  return std::ranges::any_of(windows_, [](const auto& each) { return each.second && each.second->isActive(); });
}

}  // namespace desktop
