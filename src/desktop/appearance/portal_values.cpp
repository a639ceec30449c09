#include "desktop/appearance/portal_values.hpp"

#include <cmath>
#include <cstdint>

#include <glib.h>

#include "desktop/glib/gobject.hpp"

namespace desktop {
namespace {

/// The value inside any number of nested variants.
OwnedVariant unwrapped(GVariant* value) {
  OwnedVariant inner(g_variant_ref(value));
  while (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_VARIANT) != FALSE) {
    inner.reset(g_variant_get_variant(inner.get()));
  }
  return inner;
}

bool isShare(double value) { return value >= 0 && value <= 1; }

std::uint8_t channel(double share) { return static_cast<std::uint8_t>(std::lround(share * 255)); }

}  // namespace

std::optional<render::Appearance> schemeFromPortal(GVariant* value) {
  const OwnedVariant inner = unwrapped(value);
  if (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_UINT32) == FALSE) return std::nullopt;
  switch (g_variant_get_uint32(inner.get())) {
    case 1:
      return render::Appearance::dark;
    case 2:
      return render::Appearance::light;
    default:
      return std::nullopt;
  }
}

std::optional<render::Colour> accentFromPortal(GVariant* value) {
  const OwnedVariant inner = unwrapped(value);
  if (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE("(ddd)")) == FALSE) return std::nullopt;
  double red = 0;
  double green = 0;
  double blue = 0;
  g_variant_get(inner.get(), "(ddd)", &red, &green, &blue);
  if (!isShare(red) || !isShare(green) || !isShare(blue)) return std::nullopt;
  return render::Colour{channel(red), channel(green), channel(blue)};
}

}  // namespace desktop
