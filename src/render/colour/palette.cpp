#include "render/colour/palette.hpp"

#include <algorithm>
#include <cmath>

namespace render {
namespace {

constexpr Colour opaque(std::uint32_t rgb) {
  return {static_cast<std::uint8_t>(rgb >> 16U), static_cast<std::uint8_t>(rgb >> 8U & 0xFFU),
          static_cast<std::uint8_t>(rgb & 0xFFU), 1};
}

constexpr Palette light{.background = opaque(0xFFFFFF),
                        .primary = opaque(0x1B1C1F),
                        .secondary = opaque(0x5C6069),
                        .tertiary = opaque(0x6E727B),
                        .tint = opaque(0x1A62D6),
                        .redRole = opaque(0xC9252D),
                        .rule = {0x1B, 0x1C, 0x1F, 0.12},
                        .edge = {0x1B, 0x1C, 0x1F, 0.34},
                        .placeholder = 0.22};

constexpr Palette dark{.background = opaque(0x1E1F23),
                       .primary = opaque(0xF4F5F7),
                       .secondary = opaque(0xADB1BA),
                       .tertiary = opaque(0x8B8F9A),
                       .tint = opaque(0x6AA8FF),
                       .redRole = opaque(0xFF7A75),
                       .rule = {0xF4, 0xF5, 0xF7, 0.15},
                       .edge = {0xF4, 0xF5, 0xF7, 0.30},
                       .placeholder = 0.26};

/// The linear light of an sRGB channel, 0 to 1.
double linear(std::uint8_t channel) {
  const double value = channel / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const Colour& colour) {
  return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

/// Interpolates in sRGB: the first colour at 0, the second at 1.
Colour between(const Colour& first, Colour second, double share) {
  second.opacity = share;
  return blended(second, first);
}

constexpr double leastContrast = 4.5;

bool isReadable(const Colour& tint, const Colour& background) {
  Colour badge = tint;
  badge.opacity = 0.15;
  return contrast(tint, background) >= leastContrast && contrast(tint, blended(badge, background)) >= leastContrast;
}

/// The colour, moved towards `end` as little as makes it suit.
template <typename Suits>
Colour movedUntil(Colour colour, const Colour& end, Suits suits) {
  colour.opacity = 1;
  constexpr int steps = 255;
  for (int step = 0; step < steps; ++step) {
    const Colour moved = between(colour, end, static_cast<double>(step) / steps);
    if (suits(moved)) return moved;
  }
  return end;
}

Colour readable(const Colour& accent, const Colour& background, const Colour& end) {
  return movedUntil(accent, end, [&](const Colour& tint) { return isReadable(tint, background); });
}

constexpr Colour black = opaque(0x000000);
constexpr Colour white = opaque(0xFFFFFF);

}  // namespace

const Palette& palette(Appearance appearance) { return appearance == Appearance::dark ? dark : light; }

Palette palette(Appearance appearance, const std::optional<Colour>& accent) {
  Palette colours = palette(appearance);
  if (!accent) return colours;
  colours.tint = readable(*accent, colours.background, appearance == Appearance::dark ? white : black);
  return colours;
}

Palette palette(Appearance appearance, const std::optional<Colour>& accent, Backdrop backdrop) {
  if (backdrop == Backdrop::solid) return palette(appearance, accent);
  Palette colours = palette(appearance);
  constexpr double shade = 0.75;
  colours.background.opacity = shade;
  // The backdrop with the least contrast to the texts: black behind a light board, white behind a dark one. It is
  // also the colour that the texts are moved towards.
  const Colour end = appearance == Appearance::dark ? white : black;
  const Colour worst = blended(colours.background, end);
  for (Colour* text : {&colours.primary, &colours.secondary, &colours.tertiary, &colours.redRole}) {
    *text = movedUntil(*text, end, [&](const Colour& moved) { return contrast(moved, worst) >= leastContrast; });
  }
  colours.tint = readable(accent.value_or(colours.tint), worst, end);
  return colours;
}

Colour colourOf(protocol::ForegroundStyle style, const Palette& palette) {
  switch (style) {
    case protocol::ForegroundStyle::primary:
      return palette.primary;
    case protocol::ForegroundStyle::secondary:
      return palette.secondary;
    case protocol::ForegroundStyle::tertiary:
      return palette.tertiary;
    case protocol::ForegroundStyle::tint:
      return palette.tint;
    case protocol::ForegroundStyle::red:
      return palette.redRole;
  }
  return palette.primary;
}

Colour blended(const Colour& top, const Colour& bottom) {
  const auto mix = [&](std::uint8_t over, std::uint8_t under) {
    return static_cast<std::uint8_t>(std::lround(over * top.opacity + under * (1 - top.opacity)));
  };
  return {mix(top.red, bottom.red), mix(top.green, bottom.green), mix(top.blue, bottom.blue), 1};
}

double contrast(const Colour& one, const Colour& other) {
  const double first = luminance(one);
  const double second = luminance(other);
  return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

}  // namespace render
