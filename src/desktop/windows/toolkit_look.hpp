// How boards are to look by the toolkit's own settings, for where the desktop's portal has nothing to say.
#pragma once

#include <functional>

#include "render/colour/palette.hpp"

namespace desktop {

/// Dark where the settings prefer it or the theme's background is a dark one; the text size beside the usual one.
struct ToolkitLook {
  render::Appearance appearance = render::Appearance::light;
  double textScale = 1;
  bool operator==(const ToolkitLook&) const = default;
};

/// As the person set it: the toolkit is put back to that, whatever `useAppearance` chose.
ToolkitLook toolkitLook();

/// Whether menus and the gallery are drawn dark.
void useAppearance(render::Appearance appearance);

/// Calls `changed` whenever one of the settings behind `toolkitLook` changes, for the life of the process.
void onToolkitLookChange(std::function<void()>& changed);

}  // namespace desktop
