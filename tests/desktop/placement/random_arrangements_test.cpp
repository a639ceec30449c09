// Properties of arrangements on random desktops, compared with a model that tries every place.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "desktop/placement/arrangement.hpp"
#include "desktop/placement/free_spot.hpp"
#include "desktop/placement/printing.hpp"
#include "desktop/placement/snapping.hpp"

namespace desktop {
namespace {

class Dice {
 public:
  explicit Dice(std::uint64_t seed) : generator_(seed) {}
  int roll(int first, int last) { return std::uniform_int_distribution<int>(first, last)(generator_); }

 private:
  std::mt19937_64 generator_;
};

// The desktops are small, so that every place can be tried and widgets get in each other's way.
Size smallSizes(protocol::WidgetFamily family) {
  if (family == protocol::WidgetFamily::systemSmall) return Size{8, 8};
  if (family == protocol::WidgetFamily::systemMedium) return Size{16, 8};
  return {16, 16};
}

std::vector<Monitor> randomMonitors(Dice& dice) {
  std::vector<Monitor> monitors;
  const int count = dice.roll(0, 3);
  const int primary = dice.roll(-1, 3);
  for (int i = 0; i < count; ++i) {
    const std::string serial = dice.roll(0, 2) == 0 ? "" : std::to_string(dice.roll(0, 1));
    monitors.push_back({{"Acme", "P27", serial, "DP-" + std::to_string(i)},
                        {100 * i, dice.roll(-5, 5), dice.roll(1, 60), dice.roll(1, 40)},
                        i == primary});
  }
  return monitors;
}

Placements randomPlacements(Dice& dice) {
  Placements placements;
  const protocol::WidgetFamily families[] = {protocol::WidgetFamily::systemSmall, protocol::WidgetFamily::systemMedium,
                                             protocol::WidgetFamily::systemLarge};
  for (int left = dice.roll(0, 7); left > 0; --left) {
    const MonitorIdentity identity{"Acme", "P27", std::to_string(dice.roll(0, 2)),
                                   "DP-" + std::to_string(dice.roll(0, 4))};
    placements.add("Dzien", families[dice.roll(0, 2)],
                   {identity, static_cast<Corner>(dice.roll(0, 3)), {dice.roll(-10, 70), dice.roll(-10, 50)}});
  }
  return placements;
}

bool fitsInto(Size size, const Rect& area) { return size.width <= area.width && size.height <= area.height; }

// Whether any place in the area is free, tried point by point.
bool anyFree(Size size, std::span<const Rect> others, const Rect& area) {
  for (int y = area.y; y + size.height <= area.bottom(); ++y) {
    for (int x = area.x; x + size.width <= area.right(); ++x) {
      const Rect rect{x, y, size.width, size.height};
      bool free = true;
      for (const Rect& other : others) free = free && !overlap(rect, other);
      if (free) return true;
    }
  }
  return false;
}

TEST(RandomArrangements, ShowEveryCopyWholeOnAMonitorOfTheMoment) {
  std::size_t shown = 0;
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    Dice dice(seed);
    const auto monitors = randomMonitors(dice);
    const auto placements = randomPlacements(dice);
    const auto arranged = arrange(placements, monitors, smallSizes);
    ASSERT_EQ(arranged.size(), monitors.empty() ? 0 : placements.all().size()) << "seed " << seed;
    shown += arranged.size();
    for (const auto& copy : arranged) {
      const Rect& area = monitors.at(copy.monitor).area;
      ASSERT_TRUE(contains(area, copy.rect)) << "seed " << seed << " " << copy;
      const Size natural = smallSizes(placements.find(copy.id)->family);
      if (fitsInto(natural, area)) {
        ASSERT_EQ(copy.rect.size(), natural) << "seed " << seed << " " << copy;
      } else {
        ASSERT_TRUE(copy.rect.width == area.width || copy.rect.height == area.height) << "seed " << seed << " " << copy;
      }
    }
  }
  EXPECT_GT(shown, 5000U);
}

// In which round a copy is placed: 0 exactly at its place, 1 on its own monitor, 2 on another one.
int turnOf(const Arranged& copy, const Place& place, std::span<const Monitor> monitors) {
  const auto own = findMonitor(place.monitor, monitors);
  if (!own) return 2;
  const Rect there = rectAt(originOf(place, copy.rect.size(), monitors[*own].area), copy.rect.size());
  return clampedOrigin(there, monitors[*own].area) == there.origin() ? 0 : 1;
}

TEST(RandomArrangements, CoverAnEarlierCopyOnlyWhereThereIsNoRoomAndMoveForNothingElse) {
  std::size_t covering = 0;
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    Dice dice(seed);
    const auto monitors = randomMonitors(dice);
    const auto placements = randomPlacements(dice);
    const auto arranged = arrange(placements, monitors, smallSizes);
    const auto turn = [&](const Arranged& copy) { return turnOf(copy, placements.find(copy.id)->place, monitors); };
    for (const auto& copy : arranged) {
      const Rect& area = monitors.at(copy.monitor).area;
      std::vector<Rect> earlier;
      for (const auto& other : arranged) {
        const bool before = turn(other) < turn(copy) || (turn(other) == turn(copy) && other.id < copy.id);
        if (before && other.monitor == copy.monitor) earlier.push_back(other.rect);
      }
      const auto isCovered = [&](const Rect& rect) {
        return std::ranges::any_of(earlier, [&](const Rect& other) { return overlap(other, rect); });
      };
      if (turn(copy) == 0) {
        const Point home = originOf(placements.find(copy.id)->place, copy.rect.size(), area);
        if (!isCovered(rectAt(home, copy.rect.size()))) {
          ASSERT_EQ(home, copy.rect.origin()) << "seed " << seed;
        }
      }
      if (!isCovered(copy.rect)) continue;
      ++covering;
      ASSERT_FALSE(anyFree(copy.rect.size(), earlier, area)) << "seed " << seed << " " << copy;
    }
  }
  EXPECT_GT(covering, 100U) << "hardly ever too little room";
}

bool coverEachOther(std::span<const Arranged> arranged) {
  for (const auto& one : arranged) {
    for (const auto& other : arranged) {
      if (one.id < other.id && one.monitor == other.monitor && overlap(one.rect, other.rect)) return true;
    }
  }
  return false;
}

TEST(RandomArrangements, StayAsTheyAreWhenStoredAndArrangedAgain) {
  std::size_t checked = 0;
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    Dice dice(seed);
    const auto monitors = randomMonitors(dice);
    auto placements = randomPlacements(dice);
    const auto arranged = arrange(placements, monitors, smallSizes);
    if (coverEachOther(arranged)) continue;
    ++checked;
    for (const auto& copy : arranged) placements.setPlace(copy.id, placeOf(copy.rect, monitors.at(copy.monitor)));
    const auto again = arrange(placements, monitors, smallSizes);
    ASSERT_EQ(arranged.size(), again.size());
    for (std::size_t i = 0; i < again.size(); ++i) {
      // Monitors of the same identity can't be told apart.
      if (findMonitor(monitors[arranged[i].monitor].identity, monitors) != arranged[i].monitor) break;
      ASSERT_EQ(again[i], arranged[i]) << "seed " << seed;
    }
  }
  EXPECT_GT(checked, 500U);
}

TEST(RandomArrangements, ReturnToTheExactPlaceAfterUnpluggingAndReplugging) {
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    Dice dice(seed);
    const auto monitors = randomMonitors(dice);
    const auto placements = randomPlacements(dice);
    const auto before = arrange(placements, monitors, smallSizes);
    auto fewer = monitors;
    while (!fewer.empty()) {
      fewer.erase(fewer.begin() + dice.roll(0, static_cast<int>(fewer.size()) - 1));
      arrange(placements, fewer, smallSizes);
    }
    ASSERT_EQ(arrange(placements, monitors, smallSizes), before) << "seed " << seed;
  }
}

TEST(RandomSpots, AreFoundWhereverThereIsOneAndAreFree) {
  std::size_t none = 0;
  for (std::uint64_t seed = 1; seed <= 6000; ++seed) {
    Dice dice(seed);
    const Rect area{dice.roll(-9, 9), dice.roll(-9, 9), dice.roll(1, 70), dice.roll(1, 50)};
    const Size size{dice.roll(1, 30), dice.roll(1, 30)};
    std::vector<Rect> others;
    for (int left = dice.roll(0, 6); left > 0; --left) {
      others.push_back({dice.roll(-20, 60), dice.roll(-20, 50), dice.roll(1, 40), dice.roll(1, 30)});
    }
    const auto spot = nearestFreeSpot(rectAt({dice.roll(-20, 70), dice.roll(-20, 60)}, size), others, area);
    if (!fitsInto(size, area)) continue;
    ASSERT_EQ(spot.has_value(), anyFree(size, others, area)) << "seed " << seed;
    if (!spot) ++none;
    const Point forNew = spotForNew(size, others, area);
    ASSERT_TRUE(contains(area, rectAt(forNew, size))) << "seed " << seed;
    for (const Rect& other : others) {
      if (!spot) break;
      ASSERT_FALSE(overlap(rectAt(*spot, size), other)) << "seed " << seed;
      ASSERT_FALSE(overlap(rectAt(forNew, size), other)) << "seed " << seed;
    }
  }
  EXPECT_GT(none, 100U);
}

TEST(RandomDrags, EndWithinTheAreaAndStayWhereTheyEnded) {
  for (std::uint64_t seed = 1; seed <= 6000; ++seed) {
    Dice dice(seed);
    const Rect area{dice.roll(-900, 900), dice.roll(-900, 900), dice.roll(1, 3000), dice.roll(1, 2000)};
    std::vector<Rect> others;
    for (int left = dice.roll(0, 5); left > 0; --left) {
      others.push_back({dice.roll(-900, 3000), dice.roll(-900, 2000), 240 * dice.roll(1, 2), 240});
    }
    const Size size{dice.roll(1, 500), dice.roll(1, 500)};
    const Rect wanted = rectAt({dice.roll(-1500, 4000), dice.roll(-1500, 3000)}, size);
    const Rect snapped = rectAt(snappedOrigin(wanted, others, area), size);
    ASSERT_EQ(clampedOrigin(snapped, area), snapped.origin()) << "seed " << seed;
    const Point moved = steppedOrigin(snapped, static_cast<Direction>(dice.roll(0, 3)), area);
    ASSERT_EQ(clampedOrigin(rectAt(moved, size), area), moved) << "seed " << seed;
    const Point inReach = clampedOrigin(wanted, area);
    if (fitsInto(size, area)) {
      ASSERT_LE(std::abs(snapped.x - inReach.x), 20) << "seed " << seed;
      ASSERT_LE(std::abs(snapped.y - inReach.y), 20) << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace desktop
