#include "desktop/placement/free_spot.hpp"

#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

const Rect workArea{100, 30, 1300, 560};

TEST(SpotForNew, FillsColumnsFromTheTopRight) {
  std::vector<Rect> others;
  const Point expected[] = {{1140, 50}, {1140, 310}, {880, 50}, {880, 310}, {620, 50}};
  for (const Point& spot : expected) {
    EXPECT_EQ(spotForNew(smallSize, others, workArea), spot);
    others.push_back(rectAt(spot, smallSize));
  }
}

TEST(SpotForNew, KeepsAGapFromWidgetsOffTheGrid) {
  const std::vector<Rect> others{{1133, 43, 240, 240}};
  const Point spot = spotForNew(smallSize, others, workArea);
  EXPECT_EQ(spot, (Point{1140, 310}));
  EXPECT_FALSE(overlap(grown(rectAt(spot, smallSize), 20), others[0]));
}

TEST(SpotForNew, TakesTightRoomBeforeItCoversAnother) {
  const Rect tight{0, 0, 480, 240};
  const std::vector<Rect> others{{240, 0, 240, 240}};
  EXPECT_EQ(spotForNew(smallSize, others, tight), (Point{0, 0}));
}

TEST(SpotForNew, HidesNoOtherWhollyWhereNoRoomIsLeft) {
  const Rect small{0, 0, 400, 400};
  std::vector<Rect> others;
  std::set<std::pair<int, int>> spots;
  for (int i = 0; i < 5; ++i) {
    const Point spot = spotForNew(smallSize, others, small);
    others.push_back(rectAt(spot, smallSize));
    EXPECT_TRUE(contains(small, others.back())) << others.back();
    EXPECT_TRUE(spots.emplace(spot.x, spot.y).second) << others.back();
  }
}

TEST(SpotForNew, BeginsAtTheTopLeftOfAnAreaThatIsTooSmall) {
  EXPECT_EQ(spotForNew(largeSize, {}, {10, 20, 300, 300}), (Point{10, 20}));
}

TEST(NearestFreeSpot, IsTheWantedOneWhereItIsFree) {
  EXPECT_EQ(nearestFreeSpot({333, 77, 240, 240}, {}, workArea), (Point{333, 77}));
  const std::vector<Rect> touching{{573, 77, 240, 240}};
  EXPECT_EQ(nearestFreeSpot({333, 77, 240, 240}, touching, workArea), (Point{333, 77}));
}

TEST(NearestFreeSpot, IsAGapAwayFromTheOtherOnTheShortestWay) {
  const std::vector<Rect> others{{600, 200, 240, 240}};
  EXPECT_EQ(nearestFreeSpot({590, 200, 240, 240}, others, workArea), (Point{340, 200}));
  EXPECT_EQ(nearestFreeSpot({610, 200, 240, 240}, others, workArea), (Point{860, 200}));
}

TEST(NearestFreeSpot, IsNoneWhereTheWidgetDoesNotFit) {
  const std::vector<Rect> others{{200, 130, 1000, 300}};
  EXPECT_EQ(nearestFreeSpot({300, 130, 240, 240}, others, workArea), std::nullopt);
}

}  // namespace
}  // namespace desktop
