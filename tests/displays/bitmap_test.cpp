#include "support/bitmap.hpp"

#include <gtest/gtest.h>

using support::Bitmap;
using support::filled;
using support::Pixel;

namespace {

constexpr Pixel grey{100, 100, 100, 255};

TEST(Bitmap, ReadsBackWhatItWrote) {
  auto bitmap = filled(3, 2, grey);
  bitmap.pixels[4] = {1, 2, 3, 4};
  EXPECT_EQ(support::readPng(support::writePng(bitmap)), bitmap);
  EXPECT_EQ(support::readPng("no picture"), Bitmap{});
}

TEST(Bitmap, CropLeavesOutWhatIsBeyondTheEdges) {
  auto bitmap = filled(4, 3, grey);
  bitmap.pixels[2 * 4 + 3] = {9, 9, 9, 255};
  const auto corner = support::crop(bitmap, 3, 1, 10, 10);
  EXPECT_EQ(corner.width, 1U);
  EXPECT_EQ(corner.height, 2U);
  EXPECT_EQ(corner.at(0, 1), (Pixel{9, 9, 9, 255}));
  EXPECT_EQ(support::crop(bitmap, -2, -1, 3, 2), filled(1, 1, grey));
  EXPECT_TRUE(support::crop(bitmap, 7, 7, 1, 1).pixels.empty());
}

TEST(Bitmap, CountsPixelsThatDifferByMoreThanTheTolerance) {
  auto bitmap = filled(10, 10, grey);
  bitmap.pixels[5].red = 104;
  bitmap.pixels[6].blue = 95;
  EXPECT_EQ(support::differingPixels(bitmap, filled(10, 10, grey), 4), 1U);
  EXPECT_EQ(support::differingPixels(bitmap, filled(10, 10, grey), 5), 0U);
  EXPECT_EQ(support::differingPixels(bitmap, filled(10, 9, grey), 5), 100U);
}

TEST(Bitmap, ShowsTheSameUpToOnePixelInSoMany) {
  const auto expected = filled(20, 20, grey);
  auto shown = expected;
  shown.pixels[0].red = shown.pixels[1].red = 0;
  EXPECT_TRUE(support::showsTheSame(shown, expected, "bitmap_test"));
  shown.pixels[2].red = 0;
  EXPECT_FALSE(support::showsTheSame(shown, expected, "bitmap_test"));
  EXPECT_FALSE(support::showsTheSame({}, {}, "bitmap_test"));
}

}  // namespace
