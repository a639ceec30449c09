#include "render/colour/palette.hpp"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace render {
namespace {

using protocol::ForegroundStyle;

constexpr Colour black{0, 0, 0};
constexpr Colour white{255, 255, 255};

TEST(Contrast, AgreesWithKnownPairs) {
  EXPECT_NEAR(contrast(black, white), 21, 1e-9);
  EXPECT_NEAR(contrast(white, white), 1, 1e-9);
  EXPECT_NEAR(contrast({0x76, 0x76, 0x76}, white), 4.54, 0.005);
  EXPECT_NEAR(contrast(white, {0xFF, 0, 0}), 4.0, 0.005);
}

TEST(Blending, GoesByOpacity) {
  EXPECT_EQ(blended({0, 0, 0, 0.5}, white), (Colour{128, 128, 128}));
  EXPECT_EQ(blended({10, 20, 30, 1}, white), (Colour{10, 20, 30}));
  EXPECT_EQ(blended({10, 20, 30, 0}, white), white);
}

class PaletteContrast : public ::testing::TestWithParam<Appearance> {};

TEST_P(PaletteContrast, EveryRoleIsReadableOnTheBackground) {
  const auto& colours = palette(GetParam());
  const struct {
    ForegroundStyle style;
    double least;
  } roles[] = {{ForegroundStyle::primary, 7},
               {ForegroundStyle::secondary, 4.5},
               {ForegroundStyle::tertiary, 4.5},
               {ForegroundStyle::tint, 4.5},
               {ForegroundStyle::red, 4.5}};
  for (const auto& [style, least] : roles) {
    EXPECT_GE(contrast(colourOf(style, colours), colours.background), least) << "role " << static_cast<int>(style);
  }
}

TEST_P(PaletteContrast, TextOnATintedBadgeIsReadable) {
  const auto& colours = palette(GetParam());
  Colour badge = colours.tint;
  badge.opacity = 0.15;
  EXPECT_GE(contrast(colours.primary, blended(badge, colours.background)), 4.5);
}

TEST_P(PaletteContrast, EachLevelIsFainterThanTheOneBefore) {
  const auto& colours = palette(GetParam());
  const auto strength = [&](const Colour& colour) { return contrast(colour, colours.background); };
  EXPECT_GT(strength(colours.primary), strength(colours.secondary) + 1);
  EXPECT_GT(strength(colours.secondary), strength(colours.tertiary) + 1);
}

TEST_P(PaletteContrast, RulesAreSeenButFainterThanAnyText) {
  const auto& colours = palette(GetParam());
  const double rule = contrast(blended(colours.rule, colours.background), colours.background);
  EXPECT_GT(rule, 1.1);
  EXPECT_LT(rule, 2);
}

TEST_P(PaletteContrast, EdgeStandsOutFromTheBoardAndFromAPictureOfItsColour) {
  const auto& colours = palette(GetParam());
  const Colour edge = blended(colours.edge, colours.background);
  EXPECT_GE(contrast(edge, colours.background), 2);
  EXPECT_GE(contrast(edge, GetParam() == Appearance::dark ? black : white), 2);
}

// A tint fills its own badge with 15 %.
double contrastOnItsBadge(const Palette& colours) {
  Colour badge = colours.tint;
  badge.opacity = 0.15;
  return contrast(colours.tint, blended(badge, colours.background));
}

TEST_P(PaletteContrast, AnyAccentIsReadableAndNoFurtherFromItselfThanItMustBe) {
  std::mt19937 generator(4);
  std::uniform_int_distribution<int> channel(0, 255);
  const auto roll = [&] { return static_cast<std::uint8_t>(channel(generator)); };
  int moved = 0;
  for (int round = 0; round < 5000; ++round) {
    const Colour accent{roll(), roll(), roll(), 0.5};
    const auto colours = palette(GetParam(), accent);
    const std::string what = "round " + std::to_string(round);
    ASSERT_EQ(colours.tint.opacity, 1) << what;
    ASSERT_GE(contrast(colours.tint, colours.background), 4.5) << what;
    ASSERT_GE(contrastOnItsBadge(colours), 4.5) << what;
    if (colours.tint == Colour{accent.red, accent.green, accent.blue}) continue;
    ++moved;
    // An accent that was changed has hardly more contrast than required. Channels are integers, so it is not exact.
    ASSERT_LT(contrastOnItsBadge(colours), 4.75) << what;
  }
  EXPECT_GT(moved, 500);
  EXPECT_LT(moved, 4500);
}

TEST_P(PaletteContrast, ReadableAccentStaysAsItIsAndNothingElseChanges) {
  const Colour accent = GetParam() == Appearance::dark ? Colour{0xFF, 0xB0, 0x40} : Colour{0x80, 0x20, 0x90};
  Palette expected = palette(GetParam());
  const auto colours = palette(GetParam(), accent);
  EXPECT_EQ(colours.tint, accent);
  expected.tint = accent;
  EXPECT_EQ(colours, expected);
  EXPECT_EQ(palette(GetParam(), std::nullopt), palette(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Palette, PaletteContrast, ::testing::Values(Appearance::light, Appearance::dark),
                         [](const auto& given) { return given.param == Appearance::dark ? "Dark" : "Light"; });

/// What a board's texts lie on where this is behind the board.
Colour paperOver(const Palette& colours, const Colour& behind) { return blended(colours.background, behind); }

TEST(Backdrop, LeavesEveryTextReadableOnAnyPicture) {
  const std::optional<Colour> accents[] = {std::nullopt, Colour{255, 220, 0}, Colour{0, 0, 64}, Colour{128, 128, 128}};
  for (const auto appearance : {Appearance::light, Appearance::dark}) {
    for (const auto& accent : accents) {
      const Palette colours = palette(appearance, accent, Backdrop::none);
      ASSERT_LT(colours.background.opacity, 1);
      for (int step = 0; step < 6 * 6 * 6; ++step) {
        const auto channel = [&](int divisor) { return static_cast<std::uint8_t>(step / divisor % 6 * 51); };
        const Colour paper = paperOver(colours, {channel(1), channel(6), channel(36)});
        for (const Colour& text :
             {colours.primary, colours.secondary, colours.tertiary, colours.redRole, colours.tint}) {
          EXPECT_GE(contrast(text, paper), 4.5) << int(appearance) << " step " << step;
        }
        Colour badge = colours.tint;
        badge.opacity = 0.15;
        EXPECT_GE(contrast(colours.tint, blended(badge, paper)), 4.5) << int(appearance) << " step " << step;
      }
    }
  }
}

TEST(Backdrop, SolidOneIsTheUsualPalette) {
  EXPECT_EQ(palette(Appearance::dark, Colour{1, 2, 3}, Backdrop::solid), palette(Appearance::dark, Colour{1, 2, 3}));
  EXPECT_EQ(palette(Appearance::light, std::nullopt, Backdrop::translucent),
            palette(Appearance::light, std::nullopt, Backdrop::none));
}

}  // namespace
}  // namespace render
