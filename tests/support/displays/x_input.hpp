// The mouse and the keyboard of an X server, moved by the XTEST extension: to clients they are a person's.
#pragma once

#include <string>
#include <vector>

#include "support/displays/geometry.hpp"
#include "support/displays/x_connection.hpp"

namespace support {

class XInput {
 public:
  explicit XInput(const XConnection& connection) : connection_(connection) {}

  void moveTo(ScreenPoint point);
  void press(MouseButton button = MouseButton::left);
  void release(MouseButton button = MouseButton::left);
  void click(ScreenPoint point, MouseButton button = MouseButton::left);
  /// In small steps at a hand's pace, for clients that look at the pointer once a frame.
  void drag(ScreenPoint from, ScreenPoint to, MouseButton button = MouseButton::left);

  /// Strikes the key of a keysym ("XK_Return" without its prefix is 0xff0d) while the modifiers are held. Throws
  /// std::runtime_error where the keyboard has no such key.
  void key(std::uint32_t keysym, const std::vector<std::uint32_t>& modifiers = {});
  /// Holds a key down until it is let go.
  void hold(std::uint32_t keysym);
  void letGo(std::uint32_t keysym);

 private:
  void send(std::uint8_t type, std::uint8_t detail, ScreenPoint point = {});
  std::uint8_t codeOf(std::uint32_t keysym) const;

  const XConnection& connection_;
};

}  // namespace support
