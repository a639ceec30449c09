#include "platform/calendar/instant.hpp"

#include <random>

#include <gtest/gtest.h>

namespace platform {
namespace {

absl::Time utc(int year, int month, int day, int hour, int minute, int second) {
  return absl::FromCivil(absl::CivilSecond(year, month, day, hour, minute, second), absl::UTCTimeZone());
}

TEST(FormatInstant, WritesOnlyTheFractionDigitsThatAreNeeded) {
  EXPECT_EQ(formatInstant(utc(2025, 3, 14, 9, 30, 0)), "2025-03-14T09:30:00Z");
  EXPECT_EQ(formatInstant(utc(2025, 3, 14, 9, 30, 0) + absl::Milliseconds(250)), "2025-03-14T09:30:00.25Z");
  EXPECT_EQ(formatInstant(utc(2025, 3, 14, 9, 30, 0) + absl::Nanoseconds(1) / 4), "2025-03-14T09:30:00.00000000025Z");
}

TEST(FormatInstant, KeepsFourDigitsInEarlyYearsAndSignsThoseBeyond) {
  EXPECT_EQ(formatInstant(utc(33, 4, 3, 15, 0, 0)), "0033-04-03T15:00:00Z");
  EXPECT_EQ(formatInstant(utc(-1, 12, 31, 22, 36, 0)), "-0001-12-31T22:36:00Z");
  EXPECT_EQ(formatInstant(utc(10000, 1, 1, 0, 0, 0)), "+10000-01-01T00:00:00Z");
}

TEST(ParseInstant, ReadsEveryOffset) {
  const auto expected = utc(2025, 3, 14, 9, 30, 0);
  for (const char* text : {"2025-03-14T09:30:00Z", "2025-03-14T10:30:00+01:00", "2025-03-13T23:30:00-10:00",
                           "2025-03-14T09:30:00.000Z", "2025-03-14T09:30:00-00:00"}) {
    EXPECT_EQ(parseInstant(text), expected) << text;
  }
}

TEST(ParseInstant, RefusesWhatIsNoInstant) {
  for (const char* text : {"",
                           "2025-03-14",
                           "2025-03-14T09:30:00",
                           "2025-03-14 09:30:00Z",
                           "2025-03-14t09:30:00Z",
                           "2025-03-14T09:30:00z",
                           "2025-02-30T09:30:00Z",
                           "2025-13-01T00:00:00Z",
                           "2025-03-14T24:00:00Z",
                           "2025-03-14T09:60:00Z",
                           "2025-03-14T09:30:60Z",
                           "2025-03-14T09:30:00.Z",
                           "2025-03-14T09:30:00+24:00",
                           "2025-03-14T09:30:00+0100",
                           " 2025-03-14T09:30:00Z",
                           "2025-03-14T09:30:00Z ",
                           "25-03-14T09:30:00Z",
                           "+025-03-14T09:30:00Z",
                           "2025-03-14T09:30:00,5Z",
                           "-12345678901-01-01T00:00:00Z"}) {
    EXPECT_EQ(parseInstant(text), std::nullopt) << text;
  }
}

TEST(ParseInstant, ReadsBackEveryInstantThatWasWritten) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937_64 random(seed);
  const std::int64_t span = absl::ToUnixSeconds(utc(12000, 1, 1, 0, 0, 0));
  std::uniform_int_distribution<std::int64_t> seconds(-span, span);
  std::uniform_int_distribution<std::int64_t> quarters(0, 3999999999);
  for (int i = 0; i < 20000; ++i) {
    const absl::Time instant = absl::FromUnixSeconds(seconds(random)) + absl::Nanoseconds(1) / 4 * quarters(random);
    ASSERT_EQ(parseInstant(formatInstant(instant)), instant) << formatInstant(instant);
  }
}

}  // namespace
}  // namespace platform
