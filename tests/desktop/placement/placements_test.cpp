#include "desktop/placement/placements.hpp"

#include <limits>

#include <gtest/gtest.h>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

const Place place{{"Acme", "P27", "A1", "DP-1"}, Corner::topRight, {20, 20}};

TEST(Placements, GivesEachCopyAnIdOfItsOwn) {
  Placements placements;
  EXPECT_TRUE(placements.empty());
  EXPECT_EQ(placements.add("Dzien", protocol::WidgetFamily::systemSmall, place), 1);
  EXPECT_EQ(placements.add("Dzien", protocol::WidgetFamily::systemSmall, place), 2);
  placements.remove(1);
  EXPECT_EQ(placements.add("Dzien", protocol::WidgetFamily::systemLarge, place), 3);
  EXPECT_EQ(placements.find(1), nullptr);
  EXPECT_EQ(placements.find(3)->family, protocol::WidgetFamily::systemLarge);
  EXPECT_EQ(placements.all().size(), 2U);
}

TEST(Placements, FindsAFreeIdAfterTheLargest) {
  constexpr int largest = std::numeric_limits<int>::max();
  Placements placements({{largest, "Dzien", protocol::WidgetFamily::systemSmall, place},
                         {largest - 1, "Dzien", protocol::WidgetFamily::systemSmall, place}});
  EXPECT_EQ(placements.add("Dzien", protocol::WidgetFamily::systemSmall, place), 1);
  EXPECT_EQ(placements.add("Dzien", protocol::WidgetFamily::systemSmall, place), 2);
}

TEST(Placements, EndsAtTheMostCopies) {
  Placements placements;
  for (std::size_t i = 0; i < mostCopies; ++i)
    ASSERT_TRUE(placements.add("Dzien", protocol::WidgetFamily::systemSmall, place));
  EXPECT_EQ(placements.add("Dzien", protocol::WidgetFamily::systemSmall, place), std::nullopt);
  EXPECT_EQ(placements.all().size(), mostCopies);
}

TEST(Placements, ChangesTheOneCopyMeant) {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, place);
  const int second = placements.add("Dzien", protocol::WidgetFamily::systemSmall, place).value();
  const Placements before = placements;
  placements.setFamily(second, protocol::WidgetFamily::systemLarge);
  placements.setPlace(second, {place.monitor, Corner::bottomLeft, {0, 40}});
  EXPECT_EQ(*placements.find(1), *before.find(1));
  EXPECT_EQ(*placements.find(second),
            (Placed{2, "Dzien", protocol::WidgetFamily::systemLarge, {place.monitor, Corner::bottomLeft, {0, 40}}}));
  EXPECT_NE(placements, before);
}

TEST(Placements, ChangesNothingForAnIdThatIsNotPlaced) {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, place);
  const Placements before = placements;
  placements.remove(7);
  placements.setFamily(7, protocol::WidgetFamily::systemLarge);
  placements.setPlace(0, {});
  EXPECT_EQ(placements, before);
}

TEST(Placements, RestoreARemovedCopyAtItsPosition) {
  Placements placements;
  for (int i = 0; i < 3; ++i) placements.add("Dzien", protocol::WidgetFamily::systemSmall, {{}, {}, {i, i}});
  const Placements before = placements;
  const Placed second = *placements.find(2);
  placements.remove(2);
  EXPECT_EQ(placements.restore(second, 1), 2);
  EXPECT_EQ(placements, before);
  placements.remove(1);
  EXPECT_EQ(placements.restore(*before.find(1), 99), 1);
  EXPECT_EQ(placements.all().back(), *before.find(1)) << "at the end of a list that is shorter now";
}

TEST(Placements, RestoredCopyWhoseIdIsTakenGetsANewOne) {
  Placements placements;
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, {});
  const Placed removed = *placements.find(1);
  placements.remove(1);
  placements.add("Dzien", protocol::WidgetFamily::systemLarge, {});
  EXPECT_EQ(placements.restore(removed, 0), 2);
  EXPECT_EQ(placements.all().size(), 2U);
  while (placements.all().size() < mostCopies) placements.add("Dzien", protocol::WidgetFamily::systemSmall, {});
  EXPECT_EQ(placements.restore(removed, 0), std::nullopt);
}

}  // namespace
}  // namespace desktop
