#include <cstring>

#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"
#include "render/picture/picture.hpp"
#include "render/support/golden_picture.hpp"
#include "render/support/random_trees.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace protocol;
using namespace render::testing;

Node fullBoard() { return board(sampleContent(State::full, Language::polish, 12), Family::medium); }

TEST(Png, HasThePixelsOfItsFamilyAtEveryScale) {
  const Node tree = Text("Vamba");
  for (const auto& form : {smallFamily, mediumFamily, largeFamily}) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
      const auto picture = drawPng(tree, {.form = form, .scale = scale});
      ASSERT_TRUE(picture);
      const auto bitmap = readPng(*picture);
      EXPECT_EQ(bitmap.width, std::round(form.size.width * scale));
      EXPECT_EQ(bitmap.height, std::round(form.size.height * scale));
    }
  }
}

TEST(Png, IsTheSameBytesForTheSameInput) {
  const auto once = drawPng(fullBoard(), {.scale = 2});
  ASSERT_TRUE(once);
  EXPECT_TRUE(*once == *drawPng(fullBoard(), {.scale = 2}));
}

TEST(Png, TellsItsColourSpaceAndResolutionAndNothingElse) {
  const auto picture = drawPng(Text("Vamba"), {.scale = 2, .title = "Vamba"});
  ASSERT_TRUE(picture);
  std::vector<std::string> chunks;
  for (std::size_t at = 8; at + 8 <= picture->size();) {
    std::uint32_t length = 0;
    for (std::size_t i = 0; i < 4; ++i) length = length << 8U | static_cast<unsigned char>((*picture)[at + i]);
    const auto name = picture->substr(at + 4, 4);
    if (chunks.empty() || chunks.back() != name) chunks.push_back(name);
    at += 12 + length;
  }
  EXPECT_EQ(chunks, (std::vector<std::string>{"IHDR", "sRGB", "pHYs", "IDAT", "IEND"}));
}

TEST(Png, BoardHasRoundedCornersAndIsOpaqueWithin) {
  const auto bitmap = readPng(*drawPng(fullBoard(), {.appearance = Appearance::dark}));
  EXPECT_EQ(bitmap.at(0, 0).opacity, 0);
  EXPECT_EQ(bitmap.at(479, 319).opacity, 0);
  EXPECT_EQ(bitmap.at(240, 5), (Pixel{0x1E, 0x1F, 0x23, 255}));
  EXPECT_EQ(bitmap.at(0, 120).opacity, 255);
}

TEST(Png, TreeWithoutContainerBackgroundIsTransparentAroundItsText) {
  const auto bitmap = readPng(*drawPng(Text("Vamba"), {}));
  EXPECT_EQ(bitmap.at(400, 200).opacity, 0);
}

TEST(Png, RulesAreCrispAtEveryScale) {
  const Node tree = VStack({.spacing = 6}, {Text("a"), Divider(), Text("b"), Divider()})
                        .padding(12)
                        .containerBackground(ContainerBackground::background);
  for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    const auto bitmap = readPng(*drawPng(tree, {.scale = scale}));
    const auto column = static_cast<std::uint32_t>(300 * scale);
    std::uint32_t shaded = 0;
    std::vector<Pixel> seen;
    for (std::uint32_t y = bitmap.height / 48; y < bitmap.height * 47 / 48; ++y) {
      const auto& pixel = bitmap.at(column, y);
      if (pixel == Pixel{255, 255, 255, 255}) continue;
      ++shaded;
      if (std::find(seen.begin(), seen.end(), pixel) == seen.end()) seen.push_back(pixel);
    }
    EXPECT_EQ(seen.size(), 1U) << "half-shaded rows at " << scale;
    EXPECT_EQ(shaded, 2 * static_cast<std::uint32_t>(scale)) << scale;
  }
}

TEST(Png, BaselinesLieOnPixelsAtEveryScale) {
  // The H has flat feet on the baseline: the row above is as dark as the stems, and the row below is empty.
  const Node tree = VStack({.spacing = 6.37}, {Text("HHH"), Text("HHH").font(TextStyle::caption2), Text("HHH")})
                        .padding(12)
                        .containerBackground(ContainerBackground::background);
  for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    const auto bitmap = readPng(*drawPng(tree, {.scale = scale}));
    const auto darkest = [&](std::uint32_t y) {
      int darkness = 0;
      for (std::uint32_t x = 12; x < bitmap.width / 8; ++x) darkness = std::max(darkness, 255 - bitmap.at(x, y).green);
      return darkness;
    };
    int feet = 0;
    for (std::uint32_t y = bitmap.height / 24; y + 1 < bitmap.height / 2; ++y) {
      if (darkest(y) == 0 || darkest(y + 1) != 0) continue;
      ++feet;
      EXPECT_EQ(darkest(y), darkest(y - 1)) << "row " << y << " at " << scale;
    }
    EXPECT_EQ(feet, 3) << scale;
  }
}

TEST(Png, ScaleOutOfRangeIsRefusedInEveryFormat) {
  const Node tree = Text("Vamba");
  for (const double scale : {0.0, -1.0, 0.001, 1e9, std::nan(""), std::numeric_limits<double>::infinity()}) {
    for (const auto draw : {drawPng, drawSvg, drawPdf}) {
      const auto picture = draw(tree, {.scale = scale});
      ASSERT_FALSE(picture) << scale;
      EXPECT_EQ(picture.error(), PictureError::scaleOutOfRange);
    }
  }
}

TEST(Png, AnyTreeIsDrawnWithinItsEdge) {
  for (std::uint64_t seed = 500; seed < 540; ++seed) {
    const auto picture =
        drawPng(VStack({}, {View(randomTree(seed))}).padding(12).containerBackground(ContainerBackground::background),
                {.form = smallFamily});
    ASSERT_TRUE(picture) << seed;
    const auto bitmap = readPng(*picture);
    for (std::uint32_t i = 40; i < 110; ++i) {
      const Pixel white{255, 255, 255, 255};
      ASSERT_TRUE(bitmap.at(2, i) == white && bitmap.at(227, i) == white) << "seed " << seed << " row " << i;
    }
  }
}

}  // namespace
}  // namespace render
