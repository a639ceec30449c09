#include "desktop/placement/snapping.hpp"

#include <vector>

#include <gtest/gtest.h>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

const Rect oddArea{100, 30, 1313, 777};

TEST(Snapping, GoesToTheAreasEdgesElseToTheGrid) {
  const struct {
    Point wanted;
    Point snapped;
    const char* why;
  } cases[] = {
      {{100, 30}, {100, 30}, "at the corner"},
      {{109, 39}, {100, 30}, "near the corner"},
      {{111, 41}, {120, 50}, "nearer to a gap within it"},
      {{131, 61}, {120, 50}, "as near to the gap as to the next line, and it is seen"},
      {{133, 63}, {140, 70}, "the grid"},
      {{304, 225}, {300, 230}, "the grid, far from anything"},
      {{1170, 565}, {1173, 567}, "the far corner"},
      {{1155, 549}, {1153, 547}, "a gap within the far corner"},
      {{0, -500}, {100, 30}, "out of the area"},
      {{5000, 5000}, {1173, 567}, "far out of the area"},
  };
  for (const auto& [wanted, snapped, why] : cases) {
    EXPECT_EQ(snappedOrigin(rectAt(wanted, smallSize), {}, oddArea), snapped) << why;
  }
}

TEST(Snapping, GoesToOtherWidgetsEdgesAndAGapBesideThem) {
  const std::vector<Rect> others{{507, 303, 240, 240}};
  const struct {
    Point wanted;
    Point snapped;
    const char* why;
  } cases[] = {
      {{760, 310}, {767, 303}, "right of it, tops in line"},
      {{250, 295}, {247, 303}, "left of it"},
      {{500, 560}, {507, 563}, "below it, left edges in line"},
      {{515, 45}, {507, 43}, "above it"},
      {{1000, 312}, {1000, 303}, "far beside it: tops in line"},
      {{770, 540}, {767, 547}, "right of it, a gap above the area's end"},
  };
  for (const auto& [wanted, snapped, why] : cases) {
    EXPECT_EQ(snappedOrigin(rectAt(wanted, smallSize), others, oddArea), snapped) << why;
  }
}

TEST(Snapping, DoesNotKeepAGapToAWidgetThatIsNotBeside) {
  const std::vector<Rect> others{{507, 40, 100, 100}};
  EXPECT_EQ(snappedOrigin({633, 400, 240, 240}, others, oddArea), (Point{640, 410}));
}

TEST(Snapping, PutsWhatIsTooLargeAtTheTopLeft) {
  EXPECT_EQ(snappedOrigin({500, 500, 2000, 2000}, {}, oddArea), oddArea.origin());
}

TEST(Stepping, MovesByOneStepAndStopsAtTheEdge) {
  const struct {
    Point from;
    Direction direction;
    Point to;
  } cases[] = {
      {{300, 300}, Direction::left, {280, 300}}, {{300, 300}, Direction::right, {320, 300}},
      {{300, 300}, Direction::up, {300, 280}},   {{300, 300}, Direction::down, {300, 320}},
      {{103, 300}, Direction::left, {100, 300}}, {{1170, 300}, Direction::right, {1173, 300}},
      {{300, 30}, Direction::up, {300, 30}},     {{300, 567}, Direction::down, {300, 567}},
  };
  for (const auto& [from, direction, to] : cases) {
    EXPECT_EQ(steppedOrigin(rectAt(from, smallSize), direction, oddArea), to) << from;
  }
}

}  // namespace
}  // namespace desktop
