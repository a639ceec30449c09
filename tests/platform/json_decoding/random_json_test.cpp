// Random bodies, most of them nearly JSON, judged by the decoder and by an independent slow grammar.
#include <algorithm>
#include <array>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/json_decoding/slow_json_grammar.hpp"
#include "platform/json_decoding/test_types.hpp"

namespace platform {
namespace {

class RandomJson {
 public:
  explicit RandomJson(unsigned seed) : random_(seed) {}

  std::string document() { return blanks() + value(0) + blanks(); }

  /// The document with up to three pieces removed, repeated, replaced or put in.
  std::string mutated(std::string text) {
    static constexpr std::array<std::string_view, 40> pieces{
        "\"", "\\",  ",",  ":", "[",    "]",    "{",     "}",      "0",    "1",        ".",  "e",       "-",    "+",
        " ",  "\n",  "\t", "/", "u",    "\\u",  "\\ud8", "\\u00e", "null", "true",     "[]", "{}",      "\"\"", "01",
        "1.", "NaN", "\v", "a", "\x80", "\xC3", "\xFF",  "\xED",   "\x01", "\xEF\xBB", "//", "\xC2\xA0"};
    for (auto times = below(4); times > 0; --times) {
      const auto at = below(text.size() + 1);
      const auto length = std::min<std::size_t>(below(3), text.size() - at);
      switch (below(4)) {
        case 0:
          text.erase(at, length);
          break;
        case 1:
          text.insert(at, text.substr(at, length));
          break;
        case 2:
          text.resize(at);
          break;
        default:
          text.replace(at, length, pieces[below(pieces.size())]);
      }
    }
    return text;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }
  std::string_view oneOf(std::initializer_list<std::string_view> choices) {
    return choices.begin()[below(choices.size())];
  }

  std::string blanks() { return std::string(oneOf({"", "", "", " ", "\n", "\r\n", "\t "})); }

  std::string string() {
    std::string text = "\"";
    for (auto length = below(6); length > 0; --length) {
      text += oneOf({"a",         "x",     "name",  "ą",     "😀",        " ",
                     R"(\n)",     R"(\")", R"(\\)", R"(\/)", R"(\u0041)", R"(\ud83d\ude00)",
                     R"(\ud800)", "\x7f",  "[",     "]",     "{",         "}",
                     ",",         ":",     "/"});
    }
    return text + "\"";
  }

  std::string value(int depth) {
    switch (below(depth > 5 ? 3 : 5)) {
      case 0:
        return string();
      case 1:
        return std::string(oneOf({"0", "-0", "7", "7.0", "-1.5e3", "1E+2", "10e-1", "9223372036854775808", "1e308"}));
      case 2:
        return std::string(oneOf({"null", "true", "false"}));
      case 3: {
        std::string text = "[" + blanks();
        for (auto length = below(4), i = length; i > 0; --i) {
          text += (i == length ? "" : "," + blanks()) + value(depth + 1) + blanks();
        }
        return text + "]";
      }
      default: {
        std::string text = "{" + blanks();
        for (auto length = below(4), i = length; i > 0; --i) {
          text +=
              (i == length ? "" : "," + blanks()) + string() + blanks() + ":" + blanks() + value(depth + 1) + blanks();
        }
        return text + "}";
      }
    }
  }

  std::mt19937 random_;
};

TEST(RandomJson, IsAcceptedExactlyWhenItIsJson) {
  constexpr unsigned seed = 314;
  SCOPED_TRACE("seed " + std::to_string(seed));
  RandomJson bodies(seed);
  const JsonDecoder decoder = decoderOfTallies();
  int accepted = 0;
  constexpr int rounds = 60'000;
  for (int i = 0; i < rounds; ++i) {
    const std::string body = bodies.mutated(bodies.document());
    const bool isJson = isJsonBySlowGrammar(body, 512);
    accepted += isJson ? 1 : 0;
    ASSERT_EQ(decoder.decode<Anything>(body).has_value(), isJson) << body;
  }
  EXPECT_GT(accepted, rounds / 10);
  EXPECT_LT(accepted, rounds * 9 / 10);
}

}  // namespace
}  // namespace platform
