#include "platform/json_decoding/json_string.hpp"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace platform {
namespace {

struct EscapeCase {
  std::string_view quoted;
  std::optional<std::string_view> text;
};

TEST(JsonString, ResolvesEscapes) {
  using namespace std::string_view_literals;
  const EscapeCase cases[] = {
      {"", ""},
      {"zażółć", "zażółć"},
      {R"(\"\\\/\b\f\n\r\t)", "\"\\/\b\f\n\r\t"},
      {R"(a\\u0041)", R"(a\u0041)"},
      {R"(\u0041\u007f)", "A\x7f"},
      {R"(\u0000)", "\0"sv},
      {R"(\u00e9\u07FF\u0800\uffff)", "é\u07ff\u0800\uffff"},
      {R"(\ud83d\uDE00!)", "\U0001F600!"},
      {R"(\ud800\udc00\udbff\udfff)", "\U00010000\U0010FFFF"},
      {R"(\ud800)", std::nullopt},
      {R"(\udc00)", std::nullopt},
      {R"(\ud800x)", std::nullopt},
      {R"(\ud800\n)", std::nullopt},
      {R"(\ud800\u0041)", std::nullopt},
      {R"(\ud800\ud800\udc00)", std::nullopt},
      {R"(\udc00\ud800)", std::nullopt},
  };
  for (const auto& [quoted, text] : cases) {
    EXPECT_TRUE(hasWellFormedEscapes(quoted)) << quoted;
    EXPECT_EQ(unescaped(quoted), text) << quoted;
  }
}

TEST(JsonString, KnowsMalformedEscapes) {
  for (const std::string_view quoted :
       {R"(\)", R"(\x41)", R"(\')", R"(\0)", R"(\U0041)", R"(\u)", R"(\u004)", R"(\u004g)", R"(\u 041)", R"(\u+041)",
        R"(\u00\u0041)", R"(ok\n\q)", R"(\\\)", R"(\a)", R"(\v)", "\\\n"}) {
    EXPECT_FALSE(hasWellFormedEscapes(quoted)) << quoted;
  }
}

TEST(JsonString, EndsAtTheFirstQuoteThatIsNotEscaped) {
  EXPECT_EQ(untilClosingQuote(R"(id": 1, "b")"), "id");
  EXPECT_EQ(untilClosingQuote(R"(": 1)"), "");
  EXPECT_EQ(untilClosingQuote(R"(a\"b": 1)"), R"(a\"b)");
  EXPECT_EQ(untilClosingQuote(R"(a\\": 1)"), R"(a\\)");
  EXPECT_EQ(untilClosingQuote(R"(a\)"), R"(a\)");
}

}  // namespace
}  // namespace platform
