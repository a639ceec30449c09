#include "base/json/json_text.hpp"

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace base {
namespace {

using nlohmann::json;
using namespace std::string_literals;

std::string nested(std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']'); }

TEST(ParseJson, AgreesWithTheLibrarysOwnReader) {
  for (const char* const text : {
           R"({"a":[1,-2,3.5,true,false,null,"ż\u0142😀"],"b":{"c":{},"d":[[],[{}]]},"a2":""})",
           "  [ ]\r",
           "0",
           "-0",
           "\"\\u0000\"",
           "{\"k\":1,\"k\":{\"z\":[2]}}",
           "1e300",
           "12345678901234567890123",
       }) {
    const auto value = parseJson(text);
    ASSERT_TRUE(value) << text << ": " << value.error();
    EXPECT_EQ(*value, json::parse(text)) << text;
  }
}

TEST(ParseJson, KeepsIntegersOfSixtyFourBitsExact) {
  const auto value = parseJson("[9223372036854775807,-9223372036854775808,18446744073709551615]");
  ASSERT_TRUE(value);
  EXPECT_EQ((*value)[0].get<std::int64_t>(), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ((*value)[1].get<std::int64_t>(), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ((*value)[2].get<std::uint64_t>(), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(toText(*value), "[9223372036854775807,-9223372036854775808,18446744073709551615]");
}

TEST(ParseJson, RefusesWhatIsNotOneValueInUtf8) {
  for (const std::string& text : {
           ""s,
           " "s,
           "{"s,
           "[1,]"s,
           "{}x"s,
           "[] []"s,
           "'a'"s,
           "nul"s,
           "NaN"s,
           "01"s,
           "\"a\nb\""s,
           "\"\xff\""s,
           "\"\xc0\xaf\""s,
           "\"\xed\xa0\x80\""s,
           "\"\\ud800\""s,
           "[1]\0"s,
           "[1]\0garbage"s,
           "{\"a\"}"s,
           "1e999"s,
       }) {
    EXPECT_FALSE(parseJson(text)) << text;
  }
}

TEST(ParseJson, TakesFiveHundredAndTwelveLevelsAndNoMore) {
  EXPECT_TRUE(parseJson(nested(maximumNesting)));
  const auto refused = parseJson(nested(maximumNesting + 1));
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error(), "nested deeper than 512 levels");
}

TEST(ParseJson, StopsAtTheFirstLevelTooDeep) {
  // Sixty-four million levels read to the end would take gigabytes and fail this test's machine.
  const auto refused = parseJson(std::string(std::size_t{64} << 20, '['));
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error(), "nested deeper than 512 levels");
}

TEST(ParseJson, RefusesLongWhiteSpaceBetweenValues) {
  const std::string longest(longestWhiteSpace, '\n');
  EXPECT_TRUE(parseJson("[1," + longest + "2]"));
  EXPECT_TRUE(parseJson("[1]" + longest + "\t "));
  EXPECT_EQ(*parseJson("\"\\\"" + std::string(longestWhiteSpace + 1, ' ') + '"'),
            '"' + std::string(longestWhiteSpace + 1, ' '));
  for (const std::string& longer : {"[1," + longest + " 2]", longest + " 1", "[\"\\\\\"" + longest + " ]"}) {
    const auto refused = parseJson(longer);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), "more than 64 KiB of white space between two values");
  }
}

TEST(Shortened, KeepsTheFirstBytesOfALongStringAndOneOfWhiteSpace) {
  constexpr std::size_t longestString = 3;
  constexpr std::size_t unbounded = 1000;
  const struct {
    std::string text;
    std::string kept;
  } cases[] = {
      {"", ""},
      {R"({"abcd": ["abc", "abcdefgh"]})", R"({"abc": ["abc", "abc"]})"},
      {"[ \t\r\n1 ,  \" \t \"  , 12345 ]  ", "[ 1 , \" \t \" , 12345 ] "},
      {R"("a\"bcdef")", R"("a\"")"},
      {R"("\\\\abcdefgh")", R"("\\\\")"},               // the last quote is not escaped
      {R"("ab\u0142cdef")", R"("ab\u0142")"},           // a whole escape
      {R"("\n\n\n\n")", R"("\n\n")"},                   // nothing but escapes
      {R"("\u4e2d\u6587")", R"("\u4e2d")"},             // the same
      {R"("ab\ud83d\ude00c")", R"("ab\ud83d\ude00")"},  // a whole pair
      {"\"abąść\"", "\"abą\""},                         // a whole character
      {R"("abcdef)", R"("abc)"},                        // a text that is not JSON stays so
      {R"("abcdef""abcdef")", R"("abc""abc")"},
  };
  for (const auto& [text, kept] : cases) EXPECT_EQ(shortened(text, longestString, unbounded), kept) << text;
}

TEST(Shortened, EndsEarly) {
  EXPECT_EQ(shortened("[1,2,3,4]", 3, 4), "[1,2,");
  EXPECT_EQ(shortened("[1,2]", 3, 5), "[1,2]");
}

TEST(ToPrintableText, HoldsNoControlCharacter) {
  EXPECT_EQ(toPrintableText(json{"a\u001b[1m\u007f\u0080\u009b\u009f\u00a0ł\u0085"}),
            "[\"a\\u001b[1m\\u007f\\u0080\\u009b\\u009f\u00a0ł\\u0085\"]");
}

TEST(ToText, ReplacesBytesThatAreNotUtf8) { EXPECT_EQ(toText(json{{"a", "x\xffy\n"}}), "{\"a\":\"x\uFFFDy\\n\"}"); }

}  // namespace
}  // namespace base
