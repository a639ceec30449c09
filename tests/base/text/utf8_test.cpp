#include "base/text/utf8.hpp"

#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace base {
namespace {

using namespace std::string_view_literals;

/// The simplest implementation: RFC 3629's table, with what may follow each first byte.
bool isOneCodePoint(std::string_view bytes) {
  const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const auto between = [](unsigned char byte, int low, int high) { return byte >= low && byte <= high; };
  const auto follows = [&](std::size_t i) { return between(at(i), 0x80, 0xBF); };
  switch (bytes.size()) {
    case 1:
      return at(0) < 0x80;
    case 2:
      return between(at(0), 0xC2, 0xDF) && follows(1);
    case 3:
      return follows(1) && follows(2) && between(at(0), 0xE0, 0xEF) && !(at(0) == 0xE0 && at(1) < 0xA0) &&
             !(at(0) == 0xED && at(1) > 0x9F);
    case 4:
      return follows(1) && follows(2) && follows(3) && between(at(0), 0xF0, 0xF4) && !(at(0) == 0xF0 && at(1) < 0x90) &&
             !(at(0) == 0xF4 && at(1) > 0x8F);
    default:
      return false;
  }
}

TEST(Utf8, TakesText) {
  for (const std::string_view text : {""sv, "a"sv, "\0"sv, "\x7f"sv, "zażółć gęślą jaźń"sv, "😀"sv, "\xEF\xBB\xBF"sv,
                                      "\xEF\xBF\xBF"sv, "\xF4\x8F\xBF\xBF"sv, "12345678901234567890ą"sv}) {
    EXPECT_TRUE(isUtf8(text)) << text;
  }
}

TEST(Utf8, RefusesBytesThatAreNone) {
  for (const std::string_view bytes :
       {"\x80"sv, "\xBF"sv, "\xC0\xAF"sv, "\xC1\xBF"sv, "\xC3"sv, "\xE2\x82"sv, "\xE0\x80\x80"sv, "\xED\xA0\x80"sv,
        "\xED\xBF\xBF"sv, "\xF0\x80\x80\x80"sv, "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv, "\xF8\x88\x80\x80\x80"sv,
        "\xFE"sv, "\xFF"sv, "\xC3("sv}) {
    EXPECT_FALSE(isUtf8(bytes));
    // Wherever it stands.
    for (std::size_t before = 0; before < 20; ++before) {
      const std::string text = std::string(before, 'a') + std::string(bytes);
      EXPECT_FALSE(isUtf8(text)) << before;
      EXPECT_FALSE(isUtf8(text + "123456789")) << before;
    }
  }
}

TEST(Utf8, AgreesWithTheStandardsTableOnEveryStartOfTwoAndOnManyLongerOnes) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string two{static_cast<char>(first), static_cast<char>(second)};
      const bool areTwo = first < 0x80 && second < 0x80;
      ASSERT_EQ(isUtf8(two), areTwo || isOneCodePoint(two)) << first << ' ' << second;
      if (first < 0xC0) continue;
      for (const char third : {'\x00', '\x7f', '\x80', '\xbf', '\xc0'}) {
        const std::string three = two + third;
        const bool isShort = isOneCodePoint(two) && isOneCodePoint({&third, 1});
        ASSERT_EQ(isUtf8(three), isShort || isOneCodePoint(three)) << first << ' ' << second;
        if (first < 0xF0) continue;
        for (const char fourth : {'\x00', '\x7f', '\x80', '\xbf', '\xc0'}) {
          ASSERT_EQ(isUtf8(three + fourth), isOneCodePoint(three + fourth)) << first << ' ' << second;
        }
      }
    }
  }
}

TEST(Utf8, TakesCharactersAndTheBytesThatBeginNone) {
  const std::string_view text = "aż\xc5\U0001F468";
  std::string_view valid = text;
  EXPECT_EQ(takeValidCharacter(valid), U'a');
  EXPECT_EQ(takeValidCharacter(valid), U'ż');
  EXPECT_EQ(takeValidCharacter(valid), std::nullopt);
  EXPECT_EQ(takeValidCharacter(valid), U'\U0001F468');
  EXPECT_EQ(valid, "");

  std::string_view rest = text.substr(3);
  EXPECT_EQ(takeCharacter(rest), 0xC5U);
  EXPECT_EQ(takeCharacter(rest), U'\U0001F468');
}

TEST(Utf8, KnowsTheCodePointsThatAreNoCharacters) {
  int count = 0;
  for (char32_t code = 0; code <= 0x10FFFF; ++code) count += isNoncharacter(code) ? 1 : 0;
  EXPECT_EQ(count, 66);  // The Unicode Standard, 23.7
  for (const char32_t code : {0xFDD0U, 0xFDEFU, 0xFFFEU, 0xFFFFU, 0x10FFFFU}) EXPECT_TRUE(isNoncharacter(code));
  for (const char32_t code : {0xFDCFU, 0xFDF0U, 0xFFFDU, 0x10000U}) EXPECT_FALSE(isNoncharacter(code));
}

}  // namespace
}  // namespace base
