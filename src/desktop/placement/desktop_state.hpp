// What the placements file keeps: the placed widgets, and the settings that hold for all of them.
#pragma once

#include "desktop/placement/placements.hpp"

namespace desktop {

/// In which colours boards are drawn.
enum class Scheme { system, light, dark };

/// What is behind a board's texts. `translucent` and `none` show the desktop's picture.
enum class Background { solid, translucent, none };

struct DesktopSettings {
  Scheme scheme = Scheme::system;
  Background background = Background::solid;
  bool locked = false;  ///< widgets can't be dragged, and no key moves, resizes or removes one
  bool operator==(const DesktopSettings&) const = default;
};

struct DesktopState {
  Placements placements;
  DesktopSettings settings = {};
  bool operator==(const DesktopState&) const = default;
};

}  // namespace desktop
