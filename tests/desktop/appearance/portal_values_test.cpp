#include "desktop/appearance/portal_values.hpp"

#include <gio/gio.h>
#include <gtest/gtest.h>

namespace desktop {
namespace {

using render::Appearance;
using render::Colour;

/// The value in GLib's text form.
template <typename Read>
auto from(const char* text, Read read) {
  GVariant* const value = g_variant_parse(nullptr, text, nullptr, nullptr, nullptr);
  EXPECT_NE(value, nullptr) << text;
  const auto result = read(value);
  g_variant_unref(value);
  return result;
}

TEST(PortalValues, TellTheScheme) {
  const std::pair<const char*, std::optional<Appearance>> cases[] = {
      {"uint32 1", Appearance::dark},  {"uint32 2", Appearance::light},  {"uint32 0", std::nullopt},
      {"uint32 3", std::nullopt},      {"<uint32 1>", Appearance::dark}, {"<<uint32 2>>", Appearance::light},
      {"int32 1", std::nullopt},       {"'dark'", std::nullopt},         {"(0.5, 0.5, 0.5)", std::nullopt},
      {"<@mu nothing>", std::nullopt},
  };
  for (const auto& [text, scheme] : cases) EXPECT_EQ(from(text, schemeFromPortal), scheme) << text;
}

TEST(PortalValues, TellTheAccent) {
  const std::pair<const char*, std::optional<Colour>> cases[] = {
      {"(0.0, 0.5, 1.0)", Colour{0, 128, 255}},
      {"<(1.0, 1.0, 1.0)>", Colour{255, 255, 255}},
      {"<<(0.2, 0.4, 0.6)>>", Colour{51, 102, 153}},
      {"(-1.0, -1.0, -1.0)", std::nullopt},
      {"(0.5, 0.5, 1.001)", std::nullopt},
      {"(0.5, nan, 0.5)", std::nullopt},
      {"(inf, 0.5, 0.5)", std::nullopt},
      {"(0.5, 0.5)", std::nullopt},
      {"(1, 1, 1)", std::nullopt},
      {"'#ff0000'", std::nullopt},
      {"uint32 1", std::nullopt},
  };
  for (const auto& [text, accent] : cases) EXPECT_EQ(from(text, accentFromPortal), accent) << text;
}

}  // namespace
}  // namespace desktop
