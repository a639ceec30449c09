#include "host/extension/entry.hpp"

#include <gmock/gmock.h>

#include "base/text/instant.hpp"

namespace host {
namespace {

using nlohmann::json;

absl::Time at(const std::string& instant) { return base::parseInstant(instant).value(); }

std::vector<Entry> entriesOf(const std::vector<std::string>& dates) {
  std::vector<Entry> entries;
  for (const auto& date : dates) entries.push_back(entryFrom({{"date", date}}));
  return entries;
}

TEST(Entry, OfATimelineIsTheLastWhoseDateHasCome) {
  const auto entries = entriesOf({"2026-03-01T08:00:00Z", "2026-03-01T09:00:00Z", "2026-03-01T10:00:00Z"});
  const struct {
    const char* now;
    const char* shown;
  } cases[] = {
      {"2026-03-01T07:59:59Z", "2026-03-01T08:00:00Z"},  // none has come: the first
      {"2026-03-01T08:00:00Z", "2026-03-01T08:00:00Z"},
      {"2026-03-01T09:59:59.999Z", "2026-03-01T09:00:00Z"},
      {"2026-03-01T23:00:00Z", "2026-03-01T10:00:00Z"},
  };
  for (const auto& [now, shown] : cases) EXPECT_EQ(entryAt(entries, at(now)).date, at(shown)) << now;
}

TEST(Entry, IsFoundByItsDateWhereverItStands) {
  const auto entries = entriesOf({"2026-03-01T10:00:00Z", "2026-03-01T09:00:00Z", "2026-03-01T08:00:00Z"});
  EXPECT_EQ(entryAt(entries, at("2026-03-01T09:30:00Z")).date, at("2026-03-01T09:00:00Z"));
}

TEST(Entry, TellsWhenTheNextTakesItsPlace) {
  const auto entries = entriesOf({"2026-03-01T08:00:00Z", "2026-03-01T10:00:00Z", "2026-03-01T09:00:00Z"});
  EXPECT_EQ(nextEntryAfter(entries, at("2026-03-01T08:00:00Z")), at("2026-03-01T09:00:00Z"));
  EXPECT_EQ(nextEntryAfter(entries, at("2026-03-01T09:30:00Z")), at("2026-03-01T10:00:00Z"));
  EXPECT_EQ(nextEntryAfter(entries, at("2026-03-01T10:00:00Z")), std::nullopt);
}

TEST(Entry, HoldsASentenceWhereItCarriesOne) {
  EXPECT_EQ(entryFrom({{"blad", "Zaloguj się."}}).holds, BoardHolds::sentence);
  EXPECT_EQ(entryFrom({{"blad", nullptr}}).holds, BoardHolds::day);
  EXPECT_EQ(entryFrom({{"date", "x"}}), (Entry{.json = R"({"date":"x"})", .date = std::nullopt}));
  EXPECT_EQ(entryFrom(json::array()), (Entry{.json = "[]", .date = std::nullopt}));
}

}  // namespace
}  // namespace host
