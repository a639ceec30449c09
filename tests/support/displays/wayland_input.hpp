// The mouse and the keyboard of a wlroots compositor, moved by its virtual pointer and virtual keyboard protocols: to
// clients they are a person's. The devices are there as long as the object.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/displays/geometry.hpp"

namespace support {

class WaylandInput {
 public:
  /// `display` is a socket's path. Throws std::runtime_error where the compositor has not both protocols.
  explicit WaylandInput(const std::string& display);
  WaylandInput(WaylandInput&&) noexcept;
  ~WaylandInput();

  /// Points are of the layout of all outputs, in its units, whatever their scales; this is its size.
  void setLayout(ScreenArea layout);

  void moveTo(ScreenPoint point);
  void press(MouseButton button = MouseButton::left);
  void release(MouseButton button = MouseButton::left);
  void click(ScreenPoint point, MouseButton button = MouseButton::left);
  /// In small steps at a hand's pace, for clients that look at the pointer once a frame.
  void drag(ScreenPoint from, ScreenPoint to, MouseButton button = MouseButton::left);

  /// Strikes the key of a keysym of an American keyboard while the modifiers are held. Throws std::runtime_error where
  /// there is no such key.
  void key(std::uint32_t keysym, const std::vector<std::uint32_t>& modifiers = {});

 private:
  struct Devices;
  std::unique_ptr<Devices> devices_;
  ScreenArea layout_;
};

}  // namespace support
