// The mouse and the keyboard of mutter, moved by the remote control that it offers on the session bus.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/displays/geometry.hpp"
#include "support/displays/x_connection.hpp"
#include "support/session_bus.hpp"

namespace support {

/// Every function throws std::runtime_error where mutter refuses.
class MutterInput {
 public:
  MutterInput(const SessionBus& bus, const XConnection& windows);

  void moveTo(ScreenPoint point);
  /// Waits for the X window under the mouse to have it: a window gets no clicks until mutter has drawn it there. Throws
  /// where there is none.
  void press(MouseButton button = MouseButton::left);
  void release(MouseButton button = MouseButton::left);
  void click(ScreenPoint point, MouseButton button = MouseButton::left);
  /// In small steps at a hand's pace, for clients that look at the pointer once a frame.
  void drag(ScreenPoint from, ScreenPoint to, MouseButton button = MouseButton::left);

  /// Strikes the key of a keysym while the modifiers are held.
  void key(std::uint32_t keysym, const std::vector<std::uint32_t>& modifiers = {});

 private:
  void moveBy(double right, double down);
  void button(MouseButton which, bool down);
  void strike(std::uint32_t keysym, bool down);

  const XConnection& windows_;
  BusConnection connection_;
  ScreenPoint last_;
  std::string session_;
};

}  // namespace support
