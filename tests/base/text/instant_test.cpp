#include "base/text/instant.hpp"

#include <random>

#include <gtest/gtest.h>

namespace base {
namespace {

absl::Time utc(int year, int month, int day, int hour, int minute, int second) {
  return absl::FromCivil(absl::CivilSecond(year, month, day, hour, minute, second), absl::UTCTimeZone());
}

TEST(FormatInstant, WritesOnlyTheFractionDigitsThatAreNeeded) {
  EXPECT_EQ(formatInstant(utc(2025, 3, 14, 9, 30, 0)), "2025-03-14T09:30:00Z");
  EXPECT_EQ(formatInstant(utc(2025, 3, 14, 9, 30, 0) + absl::Milliseconds(250)), "2025-03-14T09:30:00.25Z");
  EXPECT_EQ(formatInstant(utc(2025, 3, 14, 9, 30, 0) + absl::Nanoseconds(1) / 4), "2025-03-14T09:30:00.00000000025Z");
}

TEST(FormatInstant, KeepsFourDigitsInEarlyYears) {
  EXPECT_EQ(formatInstant(utc(33, 4, 3, 15, 0, 0)), "0033-04-03T15:00:00Z");
  EXPECT_EQ(formatInstant(utc(0, 1, 1, 0, 0, 0)), "0000-01-01T00:00:00Z");
  EXPECT_EQ(formatInstant(utc(9999, 12, 31, 23, 59, 59)), "9999-12-31T23:59:59Z");
}

TEST(HasWrittenForm, EndsWithTheYearsOfFourDigits) {
  EXPECT_TRUE(hasWrittenForm(utc(0, 1, 1, 0, 0, 0)));
  EXPECT_FALSE(hasWrittenForm(utc(0, 1, 1, 0, 0, 0) - absl::Nanoseconds(1)));
  EXPECT_TRUE(hasWrittenForm(utc(10000, 1, 1, 0, 0, 0) - absl::Nanoseconds(1)));
  EXPECT_FALSE(hasWrittenForm(utc(10000, 1, 1, 0, 0, 0)));
  EXPECT_FALSE(hasWrittenForm(absl::InfiniteFuture()));
  EXPECT_FALSE(hasWrittenForm(absl::InfinitePast()));
}

TEST(ParseInstant, RefusesWhatItsOffsetMovesOutOfTheYearsOfFourDigits) {
  EXPECT_EQ(parseInstant("9999-12-31T23:59:59Z"), utc(9999, 12, 31, 23, 59, 59));
  EXPECT_EQ(parseInstant("9999-12-31T23:30:00-00:30"), std::nullopt);
  EXPECT_EQ(parseInstant("9999-12-31T23:29:59-00:30"), utc(9999, 12, 31, 23, 59, 59));
  EXPECT_EQ(parseInstant("0000-01-01T00:29:59+00:30"), std::nullopt);
  EXPECT_EQ(parseInstant("0000-01-01T00:30:00+00:30"), utc(0, 1, 1, 0, 0, 0));
}

TEST(ParseDay, ReadsRealDaysOnly) {
  EXPECT_EQ(parseDay("2024-02-29"), absl::CivilDay(2024, 2, 29));
  for (const char* text : {"", "2025-02-29", "2025-13-01", "2025-3-14", "2025-03-14T", "+025-03-14"}) {
    EXPECT_EQ(parseDay(text), std::nullopt) << text;
  }
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
                           "-0001-12-31T22:36:00Z",
                           "+10000-01-01T00:00:00Z"}) {
    EXPECT_EQ(parseInstant(text), std::nullopt) << text;
  }
}

TEST(ParseInstant, ReadsBackEveryInstantThatWasWritten) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  std::mt19937_64 random(seed);
  std::uniform_int_distribution<std::int64_t> seconds(absl::ToUnixSeconds(utc(0, 1, 1, 0, 0, 0)),
                                                      absl::ToUnixSeconds(utc(9999, 12, 31, 23, 59, 59)));
  std::uniform_int_distribution<std::int64_t> quarters(0, 3999999999);
  for (int i = 0; i < 20000; ++i) {
    const absl::Time instant = absl::FromUnixSeconds(seconds(random)) + absl::Nanoseconds(1) / 4 * quarters(random);
    ASSERT_EQ(parseInstant(formatInstant(instant)), instant) << formatInstant(instant);
  }
}

}  // namespace
}  // namespace base
