#include "platform/json_decoding/json_number.hpp"

#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace platform {
namespace {

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

TEST(JsonNumber, KnowsTheGrammar) {
  for (const std::string_view text : {"0", "-0", "7", "-7", "10", "0.0", "-0.5", "1.25", "1e5", "1E5", "1e+5", "1e-5",
                                      "1.5e007", "1e999", "1234567890123456789012345678901234567890", "0e0", "-0E-0"}) {
    EXPECT_TRUE(isJsonNumber(text)) << text;
  }
  for (const std::string_view text :
       {"",     "-",     "+1",  "01",   "-01",  "00",    "1.",    ".5",       "-.5",       "1.e5",
        "1e",   "1e+",   "1e-", "1.5e", "1e5.", "1e5.0", "NaN",   "Infinity", "-Infinity", "nan",
        "0x10", "1_000", "1 ",  " 1",   "1a",   "--1",   "1e--5", "1\"",      "1,",        "\xD9\xA1"}) {
    EXPECT_FALSE(isJsonNumber(text)) << text;
  }
}

struct IntegerCase {
  std::string_view text;
  std::optional<std::int64_t> value;
};

TEST(JsonNumber, TakesIntegersHoweverTheyAreWritten) {
  const IntegerCase cases[] = {
      {"7", 7},
      {"-7", -7},
      {"7.0", 7},
      {"7.000", 7},
      {"7e0", 7},
      {"7E+0", 7},
      {"70e-1", 7},
      {"0.7e1", 7},
      {"0.07e2", 7},
      {"700.0e-2", 7},
      {"1.5e1", 15},
      {"12.50e1", 125},
      {"0", 0},
      {"-0", 0},
      {"0.000", 0},
      {"-0.0e-5", 0},
      {"0e999999", 0},
      {"0e-999999", 0},
      {"0e99999999999999999999999999", 0},
      {"100", 100},
      {"1e18", 1'000'000'000'000'000'000},
      {"10e17", 1'000'000'000'000'000'000},
      {"9223372036854775807", highest},
      {"9223372036854775807.0", highest},
      {"9.223372036854775807e18", highest},
      {"92233720368547758070e-1", highest},
      {"-9223372036854775808", lowest},
      {"-9223372036854775808.000", lowest},
      {"-9.223372036854775808e18", lowest},
      {"9007199254740993", 9007199254740993},
      {"9007199254740993.0", 9007199254740993},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(integerOfJsonNumber(text), value) << text;
}

TEST(JsonNumber, TakesNothingFractionalNorTooGreat) {
  for (const std::string_view text :
       {"7.5", "-7.5", "0.1", "7e-1", "75e-1", "7.05e1", "1e-1", "1e-999999999999999999999", "9223372036854775808",
        "-9223372036854775809", "9223372036854775807.5", "9223372036854775808.0", "92233720368547758080e-1", "1e19",
        "-1e19", "1e999", "1e99999999999999999999999999", "18446744073709551616",
        "1234567890123456789012345678901234567890"}) {
    EXPECT_EQ(integerOfJsonNumber(text), std::nullopt) << text;
  }
}

TEST(JsonNumber, LosesNothingOverMillionsOfDigits) {
  const std::string zeros(5'000'000, '0');
  EXPECT_EQ(integerOfJsonNumber("0." + zeros + "42e5000002"), 42);
  EXPECT_EQ(integerOfJsonNumber("42" + zeros + "e-5000000"), 42);
  EXPECT_EQ(integerOfJsonNumber("42" + zeros + "e-5000001"), std::nullopt);
  EXPECT_EQ(integerOfJsonNumber("42." + zeros + "1"), std::nullopt);
}

/// The same integer with its point moved and zeros added reads the same; with a digit behind the point it is none.
TEST(JsonNumber, MovingThePointChangesNothing) {
  constexpr unsigned seed = 20250314;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937_64 random(seed);
  for (int i = 0; i < 20'000; ++i) {
    const auto value = static_cast<std::int64_t>(random()) >> (random() % 64);
    const bool isNegative = value < 0;
    const std::string digits = std::to_string(value).substr(isNegative ? 1 : 0) + std::string(random() % 4, '0');
    const auto zeros = digits.size() - (std::to_string(value).size() - (isNegative ? 1 : 0));
    const auto whole = 1 + random() % digits.size();
    const bool leads = digits.front() != '0' || whole == 1;
    if (!leads) continue;
    const std::string fraction = digits.substr(whole) + std::string(random() % 3, '0');
    const auto exponent = static_cast<std::int64_t>(digits.size() - whole) - static_cast<std::int64_t>(zeros);
    const std::string sign = isNegative ? "-" : "";
    const std::string text =
        sign + digits.substr(0, whole) + (fraction.empty() ? "" : "." + fraction) + "e" + std::to_string(exponent);
    ASSERT_TRUE(isJsonNumber(text)) << text;
    EXPECT_EQ(integerOfJsonNumber(text), value) << text;
    const std::string odd =
        sign + digits.substr(0, whole) + "." + digits.substr(whole) + "5e" + std::to_string(exponent);
    EXPECT_EQ(integerOfJsonNumber(odd), std::nullopt) << odd;
  }
}

}  // namespace
}  // namespace platform
