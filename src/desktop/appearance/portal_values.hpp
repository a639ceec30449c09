// The values of the settings portal's namespace org.freedesktop.appearance. A variant within the variant, as the method
// Read answers, is taken like the value itself; one of another type or out of range says nothing.
#pragma once

#include <optional>

#include "render/colour/palette.hpp"

using GVariant = struct _GVariant;

namespace desktop {

/// Of `color-scheme`: 1 dark, 2 light, else no preference.
std::optional<render::Appearance> schemeFromPortal(GVariant* value);

/// Of `accent-color`: red, green and blue of sRGB from 0 to 1.
std::optional<render::Colour> accentFromPortal(GVariant* value);

}  // namespace desktop
