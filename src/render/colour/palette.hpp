// The colours of each role in the light and dark appearance, in sRGB, and the contrast between two colours.
#pragma once

#include <cstdint>
#include <optional>

#include "protocol/view_tree/node.hpp"

namespace render {

enum class Appearance { light, dark };

/// What is behind a board's texts: its background; its background in part and the desktop through it; or the desktop,
/// with a soft shade of the background's colour behind each text.
enum class Backdrop { solid, translucent, none };

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  double opacity = 1;
  bool operator==(const Colour&) const = default;
};

struct Palette {
  Colour background;
  Colour primary;
  Colour secondary;
  Colour tertiary;
  Colour tint;
  Colour redRole;
  Colour rule;         ///< dividers
  Colour edge;         ///< the hairline around the board
  double placeholder;  ///< opacity of the bars that stand for redacted text, in the text's own colour
  bool operator==(const Palette&) const = default;
};

const Palette& palette(Appearance appearance);

/// The palette with the person's accent colour as the tint, if there is one. The accent is darkened (light) or
/// lightened (dark) only until text in it has a contrast of 4.5 (WCAG 2.1 level AA) on the background and on a badge
/// filled with it. Its opacity is ignored. Example: a pale yellow accent becomes a dark yellow in the light appearance.
Palette palette(Appearance appearance, const std::optional<Colour>& accent);

/// The same for texts that the desktop shines through. The background has the opacity of its shade, and every text
/// colour is made darker in light and lighter in dark until it has a contrast of 4.5 whatever is behind that shade:
/// black, white or any picture.
Palette palette(Appearance appearance, const std::optional<Colour>& accent, Backdrop backdrop);

Colour colourOf(protocol::ForegroundStyle style, const Palette& palette);

/// `top` painted over the opaque `bottom`.
Colour blended(const Colour& top, const Colour& bottom);

/// The contrast ratio of two opaque colours as WCAG 2.1 defines it: 1 to 21.
double contrast(const Colour& one, const Colour& other);

}  // namespace render
