// Places on a screen, in its own pixels, counted from its top left corner.
#pragma once

namespace support {

struct ScreenPoint {
  int x = 0;
  int y = 0;
  bool operator==(const ScreenPoint&) const = default;
};

struct ScreenArea {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const ScreenArea&) const = default;

  ScreenPoint centre() const { return {x + width / 2, y + height / 2}; }
};

/// As the X protocol and the Wayland virtual pointer number them; the latter by translation.
enum class MouseButton { left = 1, middle = 2, right = 3 };

}  // namespace support
