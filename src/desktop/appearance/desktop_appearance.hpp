// What a person told the desktop about how things are to look; what was left open is none.
#pragma once

#include <optional>

#include "render/colour/palette.hpp"

namespace desktop {

struct DesktopAppearance {
  std::optional<render::Appearance> scheme;
  std::optional<render::Colour> accent;
  bool operator==(const DesktopAppearance&) const = default;
};

}  // namespace desktop
