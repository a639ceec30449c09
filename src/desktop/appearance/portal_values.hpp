// Reads the values of the settings portal's namespace org.freedesktop.appearance. A variant inside the variant, as the
// method Read returns it, is unwrapped. Values of another type or out of range give none.
#pragma once

#include <optional>

#include "render/colour/palette.hpp"

using GVariant = struct _GVariant;

namespace desktop {

/// `color-scheme`: 1 is dark, 2 is light, anything else is no preference.
std::optional<render::Appearance> schemeFromPortal(GVariant* value);

/// `accent-color`: red, green and blue of sRGB from 0 to 1.
std::optional<render::Colour> accentFromPortal(GVariant* value);

}  // namespace desktop
