#include "desktop/placement/widget_places.hpp"

#include <gtest/gtest.h>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

const Monitor screen{{"Acme", "L14", "", "eDP-1"}, {0, 0, 1280, 800}, true};

class WidgetPlacesTest : public testing::Test {
 protected:
  WidgetPlacesTest() { places_.setMonitors({screen}); }

  Rect rectOf(int id) const {
    const auto* const copy = places_.arranged(id);
    return copy == nullptr ? Rect{} : copy->rect;
  }

  double scale_ = 1;
  WidgetPlaces places_{Placements(), [this](protocol::WidgetFamily family) {
                         const Size size = sizeOf(family);
                         return Size{static_cast<int>(size.width * scale_), static_cast<int>(size.height * scale_)};
                       }};
};

TEST_F(WidgetPlacesTest, AddsBelowTheOthersAndRemoves) {
  EXPECT_TRUE(places_.add("day", protocol::WidgetFamily::systemMedium));
  EXPECT_TRUE(places_.add("day", protocol::WidgetFamily::systemSmall));
  EXPECT_EQ(rectOf(1), (Rect{780, 20, 480, 240}));
  EXPECT_EQ(rectOf(2), (Rect{1020, 280, 240, 240}));
  EXPECT_TRUE(places_.remove(1));
  EXPECT_FALSE(places_.remove(1));
  EXPECT_EQ(places_.arranged(1), nullptr);
  EXPECT_EQ(places_.all().size(), 1U);
}

TEST_F(WidgetPlacesTest, KeepsADroppedCopyWhereItWasDropped) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  EXPECT_TRUE(places_.moveTo(1, {100, 200}));
  EXPECT_EQ(rectOf(1), (Rect{100, 200, 480, 240}));
  EXPECT_EQ(places_.all()[0].place, (Place{screen.identity, Corner::topLeft, {100, 200}}));
  EXPECT_FALSE(places_.moveTo(2, {0, 0}));
}

TEST_F(WidgetPlacesTest, CopyDroppedOnAnotherIsKeptAtTheNearestFreePlace) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  places_.add("day", protocol::WidgetFamily::systemSmall);
  // It comes first in the order, so it is the neighbour that would have to move.
  places_.moveTo(1, {900, 300});
  EXPECT_EQ(rectOf(2), (Rect{1020, 280, 240, 240})) << "the other stays";
  EXPECT_FALSE(overlap(rectOf(1), rectOf(2)));
  EXPECT_EQ(rectOf(1), (Rect{800, 540, 480, 240}));
  EXPECT_EQ(places_.all()[0].place, (Place{screen.identity, Corner::bottomRight, {0, 20}}));
}

TEST_F(WidgetPlacesTest, ResizedCopyCoversNoOther) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  places_.add("day", protocol::WidgetFamily::systemSmall);
  EXPECT_TRUE(places_.resize(1, protocol::WidgetFamily::systemLarge));
  EXPECT_EQ(rectOf(2), (Rect{1020, 280, 240, 240}));
  EXPECT_EQ(rectOf(1).size(), largeSize);
  EXPECT_FALSE(overlap(rectOf(1), rectOf(2)));
  EXPECT_FALSE(places_.resize(1, protocol::WidgetFamily::systemLarge)) << "it is large already";
}

TEST_F(WidgetPlacesTest, ResizedCopyGrowsFromItsCorner) {
  places_.add("day", protocol::WidgetFamily::systemSmall);
  EXPECT_TRUE(places_.resize(1, protocol::WidgetFamily::systemMedium));
  EXPECT_EQ(rectOf(1), (Rect{780, 20, 480, 240}));
}

TEST_F(WidgetPlacesTest, CopiesGrowWithTheTextAndReturnToTheirPlaces) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  places_.add("day", protocol::WidgetFamily::systemMedium);
  scale_ = 1.25;
  places_.sizesChanged();
  EXPECT_EQ(rectOf(1), (Rect{660, 20, 600, 300}));
  EXPECT_EQ(rectOf(2), (Rect{660, 340, 600, 300}));
  scale_ = 4;
  places_.sizesChanged();
  EXPECT_EQ(rectOf(1), (Rect{0, 20, 1280, 640})) << "no larger than the monitor";
  scale_ = 1;
  places_.sizesChanged();
  EXPECT_EQ(rectOf(1), (Rect{780, 20, 480, 240}));
  EXPECT_EQ(rectOf(2), (Rect{780, 280, 480, 240}));
}

TEST_F(WidgetPlacesTest, StepsAndLandsWithinTheMonitor) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  EXPECT_TRUE(places_.step(1, Direction::left));
  EXPECT_EQ(rectOf(1), (Rect{760, 20, 480, 240}));
  EXPECT_EQ(places_.landing(1, {3, 5}, Snapping::on), (Point{0, 0}));
  EXPECT_EQ(places_.landing(1, {3, 5}, Snapping::off), (Point{3, 5}));
  EXPECT_EQ(places_.landing(1, {-30, 5}, Snapping::off), (Point{0, 5}));
}

TEST_F(WidgetPlacesTest, CopyLandsWhereItIsKeptWhenItIsDropped) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  places_.add("day", protocol::WidgetFamily::systemSmall);
  for (const auto snapping : {Snapping::on, Snapping::off}) {
    for (const Point wanted : {Point{900, 300}, Point{1000, 250}, Point{100, 100}, Point{2000, 2000}}) {
      const Point landing = places_.landing(1, wanted, snapping);
      EXPECT_FALSE(overlap(rectAt(landing, rectOf(1).size()), rectOf(2))) << wanted.x;
      places_.moveTo(1, landing);
      EXPECT_EQ(rectOf(1).origin(), landing) << wanted.x;
    }
  }
}

TEST_F(WidgetPlacesTest, ZoomedCopyKeepsItsCornerAndItsZoomInEverySize) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  EXPECT_TRUE(places_.zoom(1, 150));
  EXPECT_EQ(rectOf(1), (Rect{540, 20, 720, 360}));
  EXPECT_FALSE(places_.zoom(1, 150));
  EXPECT_TRUE(places_.resize(1, protocol::WidgetFamily::systemSmall));
  EXPECT_EQ(rectOf(1), (Rect{900, 20, 360, 360}));
  EXPECT_TRUE(places_.zoom(1, 80));
  EXPECT_EQ(rectOf(1), (Rect{1068, 20, 192, 192}));
  EXPECT_FALSE(places_.zoom(2, 80));
}

TEST_F(WidgetPlacesTest, ZoomedCopyCoversNoOther) {
  places_.add("day", protocol::WidgetFamily::systemMedium);
  places_.add("day", protocol::WidgetFamily::systemMedium);
  ASSERT_EQ(rectOf(2), (Rect{780, 280, 480, 240}));
  EXPECT_TRUE(places_.zoom(1, 150));
  EXPECT_FALSE(overlap(rectOf(1), rectOf(2)));
  EXPECT_EQ(rectOf(2), (Rect{780, 280, 480, 240}));
}

TEST_F(WidgetPlacesTest, NamesTheWidgetOfCopiesThatHaveNoNameYet) {
  places_.add("", protocol::WidgetFamily::systemMedium);
  EXPECT_TRUE(places_.nameKind("day"));
  EXPECT_EQ(places_.all()[0].kind, "day");
  EXPECT_FALSE(places_.nameKind("other"));
}

}  // namespace
}  // namespace desktop
