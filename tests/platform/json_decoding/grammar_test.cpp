// What the decoder takes for JSON at all, also where nobody asks for the value.
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/json_decoding/slow_json_grammar.hpp"
#include "platform/json_decoding/test_types.hpp"

namespace platform {
namespace {

using namespace std::string_view_literals;

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

bool isAccepted(std::string_view body) { return decoderOfTallies().decode<Anything>(body).has_value(); }

constexpr std::string_view wellFormedValues[] = {
    "null",
    "true",
    "false",
    "0",
    "-0",
    "9223372036854775807",
    "-9223372036854775808",
    "18446744073709551615",
    "1e308",
    "1e-999",
    "-1.5E-3",
    "\"\"",
    R"("\ud83d\ude00")",
    R"("\"\\\/\b\f\n\r\t\u00e9")",
    "\"\x7f\"",
    "\"zażółć 😀\"",
    "[]",
    "{}",
    "[ ]",
    "{ }",
    "[1,[2,[3]],{}]",
    R"({"":0})",
    R"({"a":1,"a":2})",
    R"({"a":{"b":[{"c":null}]}})",
    "[\n1\t,\r2 ]",
    R"(["]","}",":",","])",
};

constexpr std::string_view malformedValues[] = {
    // Numbers out of range and half surrogate pairs.
    "1e999",
    "-1e999",
    "18446744073709551616",
    "-9223372036854775809",
    "1234567890123456789012345678901234567890",
    R"("\ud800")",
    R"("\udc00")",
    R"("\ud800x")",
    R"("\ud800\n")",
    R"("\ud800\u0041")",
    R"("\ud800\ud800\udc00")",
    R"("\udc00\ud800")",
    R"({"\ud800":1})",
    // Against the grammar.
    R"({"a":"b":1})",
    R"(["a":1])",
    R"({"a":1:2})",
    R"({"a":[]:1})",
    "01",
    "1.",
    ".5",
    "+1",
    "NaN",
    "Infinity",
    "-",
    "1e",
    "0x1",
    "--1",
    "1 2",
    "tru",
    "True",
    "nul",
    "nulll",
    "truefalse",
    "undefined",
    "'a'",
    "\"",
    "\"a",
    "\"a\\\"",
    R"("\x")",
    R"("\u12")",
    R"("\u12g4")",
    "\"\t\"",
    "\"\n\"",
    "\"\0\""sv,
    "[",
    "]",
    "[1",
    "[1,",
    "[1,]",
    "[,1]",
    "[,]",
    "[1 2]",
    "[1,,2]",
    "[[]",
    "[]]",
    "[1}",
    "[:]",
    "[\"a\":1]",
    "{",
    "}",
    "{\"a\"",
    "{\"a\":",
    "{\"a\":}",
    "{\"a\":1",
    "{\"a\":1,",
    "{\"a\":1,}",
    "{,}",
    "{\"a\",1}",
    "{\"a\" 1}",
    "{1:2}",
    "{a:1}",
    "{\"a\":1 \"b\":2}",
    "{\"a\"::1}",
    "{\"a\":1]",
    "{\"a\":[}",
    "[{\"a\":]",
    "{[]:1}",
    "{null:1}",
    R"({"\x":1})",
    R"({"\u12":1})",
    "{\"a\":1}}",
    "1\"a\"",
    "\"a\"1",
    "\"a\"\"b\"",
    "[1\"a\"]",
    "[\"a\"1]",
    "[true\"a\"]",
    "//c\n1",
    "/*c*/1",
    "[1]//c",
    "\v1",
    "\f1",
    "\xC2\xA0"
    "1",
    "\xEF\xBB\xBF"
    "1",
    "\xEF\xBB\xBF"
    "[]",
    "\"\xFF\"",
    "\"\xC0\xAF\"",
    "\"\xED\xA0\x80\"",
    "\"\xF4\x90\x80\x80\"",
    "\"\xE2\x82\"",
    "\x80",
    "[1]\0"sv,
    "\0"sv,
    "1\0"sv,
};

TEST(JsonGrammar, TakesWellFormedBodies) {
  for (const std::string_view text : wellFormedValues) {
    EXPECT_TRUE(isJsonBySlowGrammar(text, 512)) << text;
    EXPECT_TRUE(isAccepted(text)) << text;
    EXPECT_TRUE(isAccepted(" \n\r\t" + std::string(text) + " \n\r\t")) << text;
  }
}

TEST(JsonGrammar, RefusesMalformedBodies) {
  for (const std::string_view text : malformedValues) {
    EXPECT_FALSE(isJsonBySlowGrammar(text, 512)) << text;
    const auto decoded = decoderOfTallies().decode<Anything>(text);
    ASSERT_FALSE(decoded) << text;
    EXPECT_EQ(decoded.error().kind, DecodingError::Kind::dataCorrupted) << text;
    EXPECT_EQ(decoded.error().codingPath, "") << text;
    EXPECT_TRUE(decoded.error().description.starts_with("the body is not valid JSON: ")) << text;
  }
}

TEST(JsonGrammar, RefusesEmptyBodies) {
  for (const std::string_view text : {"", " ", "\n", "\t\r\n  ", "\xEF\xBB\xBF"}) EXPECT_FALSE(isAccepted(text));
}

TEST(JsonGrammar, LooksIntoIgnoredKeysAndElements) {
  for (const std::string_view pattern : {R"({"x":1,"name":"a","other":@})", R"({"other":@,"x":1,"name":"a"})",
                                         R"({"x":1,"deep":{"er":[0,@]},"name":"a"})"}) {
    const auto body = [&](std::string_view value) { return std::string(pattern).replace(pattern.find('@'), 1, value); };
    for (const std::string_view value : wellFormedValues) {
      EXPECT_TRUE(decoderOfTallies().decode<Point>(body(value))) << body(value);
    }
    for (const std::string_view value : malformedValues) {
      if (isJsonBySlowGrammar(body(value), 512)) continue;
      const auto decoded = decoderOfTallies().decode<Point>(body(value));
      ASSERT_FALSE(decoded) << body(value);
      EXPECT_EQ(decoded.error().kind, DecodingError::Kind::dataCorrupted) << body(value);
    }
  }
}

TEST(JsonGrammar, MalformedTextWinsOverAWrongTypeBeforeIt) {
  const auto decoded = decoderOfTallies().decode<Point>(R"({"x":"seven","other":01})");
  ASSERT_FALSE(decoded);
  EXPECT_EQ(decoded.error().kind, DecodingError::Kind::dataCorrupted);
}

TEST(JsonGrammar, RefusesAnythingBehindTheValue) {
  for (const std::string_view tail : {"1", "[]", "{}", "null", ",", "]", "}", ":", "\"\"", "x", "\xC2\xA0"}) {
    for (const std::string_view value : {"[]", "{}", "[1]", "{\"a\":[]}", "\"a\"", "null "}) {
      EXPECT_FALSE(isAccepted(std::string(value) + std::string(tail))) << value << tail;
      EXPECT_FALSE(isAccepted(std::string(value) + "\n" + std::string(tail))) << value << tail;
    }
  }
}

TEST(JsonGrammar, NestsUpTo512Deep) {
  const auto arrays = [](int depth) { return repeated("[", depth) + repeated("]", depth); };
  const auto objects = [](int depth) { return repeated("{\"a\":", depth - 1) + "{}" + repeated("}", depth - 1); };
  EXPECT_TRUE(isAccepted(arrays(512)));
  EXPECT_FALSE(isAccepted(arrays(513)));
  EXPECT_TRUE(isAccepted(repeated("[", 512) + "1" + repeated("]", 512)));
  EXPECT_FALSE(isAccepted(repeated("[", 513) + "1" + repeated("]", 513)));
  EXPECT_TRUE(isAccepted(objects(512)));
  EXPECT_FALSE(isAccepted(objects(513)));
  EXPECT_TRUE(isAccepted("[" + objects(511) + "]"));
  EXPECT_FALSE(isAccepted("[" + objects(512) + "]"));
  EXPECT_TRUE(isAccepted("[1," + arrays(511) + "," + arrays(511) + "]"));
  EXPECT_TRUE(decoderOfTallies().decode<Point>(R"({"x":1,"name":"","other":)" + arrays(511) + "}"));
  EXPECT_FALSE(decoderOfTallies().decode<Point>(R"({"x":1,"name":"","other":)" + arrays(512) + "}"));
}

TEST(JsonGrammar, SurvivesMillionsOfOpenBrackets) {
  EXPECT_FALSE(isAccepted(repeated("[", 4'000'000)));
  EXPECT_FALSE(isAccepted(repeated("{\"a\":", 1'000'000)));
  EXPECT_FALSE(isAccepted(repeated("[", 2'000'000) + repeated("]", 2'000'000)));
}

TEST(JsonGrammar, LimitsTheValuesOfALargeBody) {
  const auto zeros = [](int count) { return "[" + repeated("0,", count - 1) + "0]"; };
  EXPECT_TRUE(isAccepted(zeros(int{mostValuesDecoded} - 1)));
  EXPECT_FALSE(isAccepted(zeros(int{mostValuesDecoded} + 1)));
  // What stands in a string is no value.
  EXPECT_TRUE(isAccepted("[\"\\\"" + repeated(",[{", 1'000'000) + "\"]"));
}

TEST(JsonGrammar, RefusesEveryBodyCutShort) {
  const std::string_view body = R"({"a":[1,{"b":"c\u00e9\\"},null,-1.5e3],"d":{},"e":[[],[true]]})";
  ASSERT_TRUE(isAccepted(body));
  for (std::size_t length = 0; length < body.size(); ++length) {
    EXPECT_FALSE(isAccepted(body.substr(0, length))) << body.substr(0, length);
    // Also where what lies behind it in memory is nobody's.
    std::string cut(body.substr(0, length));
    cut.shrink_to_fit();
    EXPECT_FALSE(isAccepted(cut)) << cut;
  }
}

}  // namespace
}  // namespace platform
