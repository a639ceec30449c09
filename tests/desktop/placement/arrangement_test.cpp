#include "desktop/placement/arrangement.hpp"

#include <gtest/gtest.h>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

using Monitors = std::vector<Monitor>;

const Monitor panel{{"Acme", "L14", "", "eDP-1"}, {0, 30, 1920, 1050}, true};
const Monitor desk{{"Acme", "P27", "A1", "DP-1"}, {1920, 0, 2560, 1440}, false};

Placements oneAt(const Place& place, protocol::WidgetFamily family = protocol::WidgetFamily::systemMedium) {
  Placements placements;
  placements.add("Dzien", family, place);
  return placements;
}

Rect onlyRect(const Placements& placements, const Monitors& monitors) {
  const auto arranged = arrange(placements, monitors, sizeOf);
  EXPECT_EQ(arranged.size(), 1U);
  return arranged.empty() ? Rect{} : arranged.front().rect;
}

TEST(Arrange, PutsEachCopyOnItsOwnMonitor) {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemMedium, {desk.identity, Corner::topRight, {20, 20}});
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, {panel.identity, Corner::bottomLeft, {20, 40}});
  const std::vector<Arranged> expected{{1, 1, {3980, 20, 480, 240}}, {2, 0, {20, 800, 240, 240}}};
  EXPECT_EQ(arrange(placements, Monitors{panel, desk}, sizeOf), expected);
}

TEST(Arrange, FollowsItsMonitorWhereverThatIsNow) {
  const auto placements = oneAt({desk.identity, Corner::topRight, {20, 20}});
  Monitor moved = desk;
  moved.identity.connector = "DP-7";
  moved.area = {-1280, 0, 1280, 720};
  EXPECT_EQ(onlyRect(placements, {panel, moved}), (Rect{-500, 20, 480, 240}));
}

TEST(Arrange, ShowsACopyOnThePrimaryMonitorUntilItsOwnComesBackToTheExactPlace) {
  const auto placements = oneAt({desk.identity, Corner::topLeft, {1700, 1113}});
  const Rect before = onlyRect(placements, {panel, desk});
  EXPECT_EQ(before, (Rect{3620, 1113, 480, 240}));
  EXPECT_EQ(onlyRect(placements, {panel}), (Rect{1440, 840, 480, 240}));
  EXPECT_EQ(arrange(placements, Monitors{}, sizeOf), std::vector<Arranged>{});
  EXPECT_EQ(onlyRect(placements, {desk, panel}), before);
}

TEST(Arrange, ClampsWhatASmallerResolutionCuts) {
  const auto placements = oneAt({panel.identity, Corner::topLeft, {900, 500}});
  Monitor smaller = panel;
  smaller.area = {0, 0, 1024, 600};
  EXPECT_EQ(onlyRect(placements, {smaller}), (Rect{544, 360, 480, 240}));
  smaller.area = {50, 60, 300, 200};
  EXPECT_EQ(onlyRect(placements, {smaller}), (Rect{50, 110, 300, 150})) << "shown smaller where it is too large";
}

TEST(Arrange, PutsTheLaterOfTwoThatWouldCoverEachOtherBeside) {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, {panel.identity, Corner::topLeft, {20, 20}});
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, {panel.identity, Corner::topLeft, {30, 30}});
  const auto arranged = arrange(placements, Monitors{panel}, sizeOf);
  ASSERT_EQ(arranged.size(), 2U);
  EXPECT_EQ(arranged[0].rect, (Rect{20, 50, 240, 240}));
  EXPECT_EQ(arranged[1].rect, (Rect{280, 60, 240, 240}));
}

TEST(Arrange, BoardsThatGrewComeUpClearOfEachOther) {
  Placements placements;
  for (int i = 0; i < 3; ++i) {
    placements.add("Dzien", protocol::WidgetFamily::systemMedium,
                   {panel.identity, Corner::topRight, {20, 20 + 260 * i}});
  }
  const auto grown = [](protocol::WidgetFamily) { return Size{480, 320}; };
  const auto arranged = arrange(placements, Monitors{panel}, grown);
  ASSERT_EQ(arranged.size(), 3U);
  EXPECT_EQ(arranged[0].rect, (Rect{1420, 50, 480, 320}));
  EXPECT_EQ(arranged[1].rect, (Rect{1420, 390, 480, 320}));
  EXPECT_EQ(arranged[2].rect, (Rect{1420, 730, 480, 320}));
}

TEST(Arrange, PutsNoGuestOverACopyThatIsAtHome) {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemSmall,
                 {desk.identity, Corner::topLeft, {20, 20}});  // first, but a guest
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, {panel.identity, Corner::topLeft, {20, 20}});
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, {desk.identity, Corner::topLeft, {20, 20}});
  const auto arranged = arrange(placements, Monitors{panel}, sizeOf);
  ASSERT_EQ(arranged.size(), 3U);
  EXPECT_EQ(arranged[1].rect, (Rect{20, 50, 240, 240}));
  EXPECT_EQ(arranged[0].rect, (Rect{280, 50, 240, 240})) << "a gap beside";
  EXPECT_EQ(arranged[2].rect, (Rect{20, 310, 240, 240})) << "a gap below";
}

TEST(Arrange, CoversOthersOnlyWhereThereIsNoRoom) {
  Monitor tiny = panel;
  tiny.area = {0, 0, 500, 260};
  Placements placements;
  for (int i = 0; i < 3; ++i)
    placements.add("Dzien", protocol::WidgetFamily::systemSmall, {desk.identity, Corner::topLeft, {0, 0}});
  const auto arranged = arrange(placements, Monitors{tiny}, sizeOf);
  ASSERT_EQ(arranged.size(), 3U);
  EXPECT_FALSE(overlap(arranged[0].rect, arranged[1].rect));
  EXPECT_TRUE(contains(tiny.area, arranged[2].rect));
}

TEST(ReadingOrder, IsFromTopToBottomThenFromLeftToRightOnEachMonitor) {
  const std::vector<Arranged> arranged{{.id = 1, .monitor = 1, .rect = {0, 0, 10, 10}},
                                       {.id = 2, .monitor = 0, .rect = {500, 300, 10, 10}},
                                       {.id = 3, .monitor = 0, .rect = {700, 20, 10, 10}},
                                       {.id = 4, .monitor = 0, .rect = {300, 20, 10, 10}}};
  EXPECT_EQ(readingOrder(arranged), (std::vector{4, 3, 2, 1}));
  EXPECT_TRUE(readingOrder({}).empty());
}

TEST(PlaceForNew, IsAtTheTopRightOfThePrimaryMonitorThenBelow) {
  Placements placements;
  const Monitors monitors{desk, panel};
  const auto first = placeForNew(mediumSize, placements, monitors, sizeOf);
  ASSERT_TRUE(first);
  EXPECT_EQ(*first, (Place{panel.identity, Corner::topRight, {20, 20}}));
  placements.add("Dzien", protocol::WidgetFamily::systemMedium, *first);
  EXPECT_EQ(placeForNew(mediumSize, placements, monitors, sizeOf),
            (Place{panel.identity, Corner::topRight, {20, 280}}));
  EXPECT_EQ(placeForNew(mediumSize, placements, {}, sizeOf), std::nullopt);
}

}  // namespace
}  // namespace desktop
