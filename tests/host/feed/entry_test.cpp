#include "host/feed/entry.hpp"

#include <gmock/gmock.h>

#include "base/text/instant.hpp"

namespace host {
namespace {

using nlohmann::json;

absl::Time at(const std::string& instant) { return base::parseInstant(instant).value(); }

TimelineAnswer timelineOf(const std::vector<std::string>& dates) {
  TimelineAnswer timeline;
  for (const auto& date : dates) timeline.entries.push_back({{"date", date}});
  return timeline;
}

TEST(Entry, OfATimelineIsTheLastWhoseDateHasCome) {
  const auto timeline = timelineOf({"2026-03-01T08:00:00Z", "2026-03-01T09:00:00Z", "2026-03-01T10:00:00Z"});
  const struct {
    const char* now;
    const char* shown;
  } cases[] = {
      {"2026-03-01T07:59:59Z", "2026-03-01T08:00:00Z"},  // none has come: the first
      {"2026-03-01T08:00:00Z", "2026-03-01T08:00:00Z"},
      {"2026-03-01T09:59:59.999Z", "2026-03-01T09:00:00Z"},
      {"2026-03-01T23:00:00Z", "2026-03-01T10:00:00Z"},
  };
  for (const auto& [now, shown] : cases) EXPECT_EQ(entryAt(timeline, at(now))["date"], shown) << now;
}

TEST(Entry, IsFoundByItsDateWhereverItStands) {
  const auto timeline = timelineOf({"2026-03-01T10:00:00Z", "2026-03-01T09:00:00Z", "2026-03-01T08:00:00Z"});
  EXPECT_EQ(entryAt(timeline, at("2026-03-01T09:30:00Z"))["date"], "2026-03-01T09:00:00Z");
}

TEST(Entry, TellsWhenTheNextTakesItsPlace) {
  const auto timeline = timelineOf({"2026-03-01T08:00:00Z", "2026-03-01T10:00:00Z", "2026-03-01T09:00:00Z"});
  EXPECT_EQ(nextEntryAfter(timeline, at("2026-03-01T08:00:00Z")), at("2026-03-01T09:00:00Z"));
  EXPECT_EQ(nextEntryAfter(timeline, at("2026-03-01T09:30:00Z")), at("2026-03-01T10:00:00Z"));
  EXPECT_EQ(nextEntryAfter(timeline, at("2026-03-01T10:00:00Z")), std::nullopt);
}

TEST(Entry, HoldsASentenceWhereItCarriesOne) {
  EXPECT_EQ(holdingOf({{"blad", "Zaloguj się."}}), BoardHolds::sentence);
  EXPECT_EQ(holdingOf({{"blad", nullptr}}), BoardHolds::day);
  EXPECT_EQ(holdingOf({{"date", "x"}}), BoardHolds::day);
  EXPECT_EQ(holdingOf(json::array()), BoardHolds::day);
}

}  // namespace
}  // namespace host
