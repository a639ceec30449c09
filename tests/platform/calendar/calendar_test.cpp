#include "platform/calendar/calendar.hpp"

#include <string>

#include <gtest/gtest.h>

#include "support/fixed_clock.hpp"

namespace platform {
namespace {

using support::zone;

std::string inZone(absl::Time instant, absl::TimeZone where) {
  return absl::FormatTime("%Y-%m-%d %H:%M:%S %Ez", instant, where);
}

struct StartOfDayCase {
  const char* zone;
  absl::CivilDay day;
  const char* start;
};

class StartOfDay : public testing::TestWithParam<StartOfDayCase> {};

TEST_P(StartOfDay, IsTheFirstInstantOfTheDay) {
  const auto& [name, day, start] = GetParam();
  const Calendar calendar(zone(name));
  const absl::Time first = calendar.startOfDay(day);
  EXPECT_EQ(inZone(first, calendar.timeZone()), start);
  EXPECT_EQ(calendar.day(first), day);
  EXPECT_LT(calendar.day(first - absl::Nanoseconds(1)), day);
}

INSTANTIATE_TEST_SUITE_P(
    Places, StartOfDay,
    testing::Values(StartOfDayCase{"Europe/Warsaw", absl::CivilDay(2025, 3, 30), "2025-03-30 00:00:00 +01:00"},
                    StartOfDayCase{"Europe/Warsaw", absl::CivilDay(2025, 3, 31), "2025-03-31 00:00:00 +02:00"},
                    StartOfDayCase{"Europe/Vilnius", absl::CivilDay(2025, 10, 26), "2025-10-26 00:00:00 +03:00"},
                    StartOfDayCase{"Europe/Vilnius", absl::CivilDay(2025, 10, 27), "2025-10-27 00:00:00 +02:00"},
                    // The clocks jump from midnight to one: the day begins at one.
                    StartOfDayCase{"Asia/Beirut", absl::CivilDay(2024, 3, 31), "2024-03-31 01:00:00 +03:00"},
                    StartOfDayCase{"America/Santiago", absl::CivilDay(2024, 9, 8), "2024-09-08 01:00:00 -03:00"},
                    StartOfDayCase{"Africa/Cairo", absl::CivilDay(2024, 4, 26), "2024-04-26 01:00:00 +03:00"},
                    // They go back from midnight to eleven: the day begins at the second midnight.
                    StartOfDayCase{"Africa/Cairo", absl::CivilDay(2024, 11, 1), "2024-11-01 00:00:00 +02:00"},
                    StartOfDayCase{"America/Santiago", absl::CivilDay(2024, 4, 7), "2024-04-07 00:00:00 -04:00"},
                    // They go back from one to midnight: midnight comes twice, the day begins at the first.
                    StartOfDayCase{"America/Havana", absl::CivilDay(2024, 11, 3), "2024-11-03 00:00:00 -04:00"},
                    StartOfDayCase{"UTC", absl::CivilDay(2024, 2, 29), "2024-02-29 00:00:00 +00:00"}));

TEST(Calendar, StepsOverTheDayThatApiaNeverHad) {
  const Calendar calendar(zone("Pacific/Apia"));
  const absl::Time noon = absl::FromCivil(absl::CivilHour(2011, 12, 29, 12), calendar.timeZone());
  EXPECT_EQ(inZone(*calendar.startOfDayAfter(noon, 1), calendar.timeZone()), "2011-12-31 00:00:00 +14:00");
  EXPECT_EQ(inZone(*calendar.startOfDayAfter(noon, 2), calendar.timeZone()), "2011-12-31 00:00:00 +14:00");
}

TEST(Calendar, CountsCalendarDaysNotHours) {
  const Calendar calendar(zone("Europe/Warsaw"));
  const absl::Time evening = absl::FromCivil(absl::CivilHour(2025, 3, 29, 23), calendar.timeZone());
  EXPECT_EQ(inZone(*calendar.startOfDayAfter(evening, 2), calendar.timeZone()), "2025-03-31 00:00:00 +02:00");
}

TEST(Calendar, HasNoDateBeyondTheEndOfTime) {
  const Calendar calendar(absl::UTCTimeZone());
  EXPECT_EQ(calendar.startOfDayAfter(absl::InfiniteFuture(), 2), std::nullopt);
  EXPECT_EQ(calendar.startOfDayAfter(absl::InfinitePast(), 2), std::nullopt);
  EXPECT_EQ(calendar.addingMinutes(absl::InfiniteFuture(), 15), std::nullopt);
}

TEST(Calendar, AddsMinutesAcrossAClockChangeAsTimeThatPasses) {
  const Calendar calendar(zone("Europe/Warsaw"));
  const absl::Time before = absl::FromCivil(absl::CivilMinute(2025, 3, 30, 1, 50), calendar.timeZone());
  EXPECT_EQ(*calendar.addingMinutes(before, 15), before + absl::Minutes(15));
}

}  // namespace
}  // namespace platform
