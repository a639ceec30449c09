#include "desktop/placement/place.hpp"

#include <gtest/gtest.h>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

const Monitor offsetMonitor{{"Acme", "P27", "A1", "DP-1"}, {100, 30, 1800, 1000}, true};

TEST(Place, IsMeasuredFromTheNearestCornerInwards) {
  const struct {
    Rect rect;
    Corner corner;
    Point inset;
  } cases[] = {
      {{120, 50, 240, 240}, Corner::topLeft, {20, 20}},     {{1640, 50, 240, 240}, Corner::topRight, {20, 20}},
      {{120, 770, 240, 240}, Corner::bottomLeft, {20, 20}}, {{1600, 700, 240, 240}, Corner::bottomRight, {60, 90}},
      {{880, 410, 240, 240}, Corner::topLeft, {780, 380}},  // in the very middle
      {{90, 20, 240, 240}, Corner::topLeft, {-10, -10}},    // out of the area
      {{100, 30, 5000, 5000}, Corner::topLeft, {0, 0}},     // larger than it
      {{1700, 30, 240, 240}, Corner::topRight, {-40, 0}},
  };
  for (const auto& [rect, corner, inset] : cases) {
    EXPECT_EQ(placeOf(rect, offsetMonitor), (Place{offsetMonitor.identity, corner, inset})) << rect;
  }
}

TEST(Place, LeadsBackToExactlyWhereTheWidgetWas) {
  for (int x = 60; x < 1900; x += 37) {
    for (int y = 0; y < 1030; y += 29) {
      const Rect rect{x, y, 480, 240};
      EXPECT_EQ(originOf(placeOf(rect, offsetMonitor), rect.size(), offsetMonitor.area), rect.origin());
    }
  }
}

TEST(Place, AtTheTopRightStaysThereWhateverTheResolutionAndSize) {
  const Place place{offsetMonitor.identity, Corner::topRight, {20, 40}};
  EXPECT_EQ(originOf(place, smallSize, {0, 0, 1920, 1080}), (Point{1660, 40}));
  EXPECT_EQ(originOf(place, smallSize, {0, 0, 1280, 800}), (Point{1020, 40}));
  EXPECT_EQ(originOf(place, mediumSize, {-1280, 30, 1280, 770}), (Point{-500, 70}));
}

TEST(ClampedOrigin, KeepsTheWholeWidgetVisibleOrItsTopLeft) {
  const Rect area{100, 30, 1000, 500};
  const struct {
    Rect wanted;
    Point origin;
  } cases[] = {
      {{200, 100, 240, 240}, {200, 100}},  {{0, 0, 240, 240}, {100, 30}},
      {{1000, 400, 240, 240}, {860, 290}}, {{500, 0, 2000, 240}, {100, 30}},
      {{500, 300, 240, 1000}, {500, 30}},  {{-1000000, 1000000, 240, 240}, {100, 290}},
      {{500, 300, 1000, 500}, {100, 30}},
  };
  for (const auto& [wanted, origin] : cases) EXPECT_EQ(clampedOrigin(wanted, area), origin) << wanted;
}

}  // namespace
}  // namespace desktop
