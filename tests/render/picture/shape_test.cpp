#include "render/picture/shape.hpp"

#include <gtest/gtest.h>

namespace render {
namespace {

Point middleOf(const Corner& corner) {
  return {(corner.start.x + 3 * corner.firstControl.x + 3 * corner.secondControl.x + corner.end.x) / 8,
          (corner.start.y + 3 * corner.firstControl.y + 3 * corner.secondControl.y + corner.end.y) / 8};
}

TEST(ContinuousCorners, TouchTheCircleInTheirMiddleAndBeginBeforeIt) {
  const auto corner = continuousCorners({0, 0, 100, 80}, 20)[0];
  const double onCircle = 20 - 20 * std::sqrt(0.5);
  EXPECT_NEAR(middleOf(corner).x, onCircle, 1e-6);
  EXPECT_NEAR(middleOf(corner).y, onCircle, 1e-6);
  EXPECT_GT(corner.start.y, 20);
  EXPECT_GT(corner.end.x, 20);
}

TEST(ContinuousCorners, AreAlikeOnAllSides) {
  const auto corners = continuousCorners({0, 0, 100, 80}, 20);
  for (const auto& corner : corners) {
    const auto middle = middleOf(corner);
    EXPECT_NEAR(std::min(middle.x, 100 - middle.x), middleOf(corners[0]).x, 1e-9);
    EXPECT_NEAR(std::min(middle.y, 80 - middle.y), middleOf(corners[0]).y, 1e-9);
  }
}

TEST(ContinuousCorners, LargestRadiusMakesACapsule) {
  const auto corners = continuousCorners({0, 0, 60, 16}, 100);
  EXPECT_DOUBLE_EQ(corners[0].start.y, 8) << "the ends meet in the middle of the short side";
  EXPECT_DOUBLE_EQ(corners[3].end.y, 8);
  EXPECT_LT(corners[0].end.x, 30);
}

TEST(ContinuousCorners, StayWithinTheRectangleHoweverSmall) {
  for (const Rect rect : {Rect{3, 4, 0, 0}, Rect{0, 0, 1, 50}, Rect{-5, 2, 7, 7}, Rect{0, 0, 480, 240}}) {
    for (const auto& corner : continuousCorners(rect, 20)) {
      for (const auto& point : {corner.start, corner.firstControl, corner.secondControl, corner.end}) {
        EXPECT_GE(point.x, rect.x - 1e-9);
        EXPECT_LE(point.x, rect.right() + 1e-9);
        EXPECT_GE(point.y, rect.y - 1e-9);
        EXPECT_LE(point.y, rect.bottom() + 1e-9);
      }
    }
  }
}

}  // namespace
}  // namespace render
