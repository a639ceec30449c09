#include "render/terminal/terminal_text.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace render::terminal {
namespace {

using testing::ElementsAre;

std::vector<std::string> lines(std::string_view text, int width, std::optional<int> limit = std::nullopt) {
  std::vector<std::string> result;
  for (const auto& line : brokenIntoLines(shown(text), width, limit)) {
    EXPECT_EQ(line.width, displayWidth(line.text));
    EXPECT_LE(line.width, width);
    result.push_back(line.text);
  }
  return result;
}

TEST(DisplayWidth, CountsColumnsOfClusters) {
  struct Case {
    std::string text;
    int width;
    std::size_t clusters;
  };
  const Case cases[] = {
      {"", 0, 0},
      {"Zażółć", 6, 6},
      {"Spręsti", 7, 7},
      {"e\u0328\u0301", 1, 1},
      {"日本語", 6, 3},
      {"ｶﾞ", 2, 1},
      {"한글", 4, 2},
      {"\u1112\u1161\u11ab", 2, 1},
      {"👍", 2, 1},
      {"👍🏽", 2, 1},
      {"👩‍👩‍👧‍👦", 2, 1},
      {"🇵🇱🇱🇹", 4, 2},
      {"☺\uFE0F", 2, 1},
      {"☺", 1, 1},
      {"1\uFE0F\u20E3", 2, 1},
      {"🏴\U000E0067\U000E0062\U000E0073\U000E0063\U000E0074\U000E007F", 2, 1},
      {"का", 1, 1},
      {"…—„”", 4, 4},
      {"\u0301", 1, 1},
      {" \u0301a", 2, 2},
  };
  for (const auto& [text, width, clusters] : cases) {
    EXPECT_EQ(displayWidth(text), width) << text;
    EXPECT_EQ(shown(text).clusters.size(), clusters) << text;
  }
}

TEST(ShownText, HoldsNothingThatATerminalObeys) {
  struct Case {
    std::string text;
    std::string shown;
  };
  const Case cases[] = {
      {"zwykły", "zwykły"},
      {"a\tb\nc\r\nd", "a b c  d"},
      {"\x1b[31mred\x1b]0;title\x07", "\uFFFD[31mred\uFFFD]0;title\uFFFD"},
      {std::string("nul\0!", 5), "nul\uFFFD!"},
      {"\x7f", "\uFFFD"},
      {"csi \u009B31m", "csi \uFFFD31m"},
      {"nel\u0085x", "nel x"},
      {"line\u2028paragraph\u2029end", "line paragraph end"},
      {"\u202Eevil\u202C", "\uFFFDevil\uFFFD"},
      {"\u2066isolated\u2069", "\uFFFDisolated\uFFFD"},
      {"marks\u200E\u200F\u061C", "marks"},
      {"\uFEFFsoft\u00ADhyphen\u200B", "softhyphen"},
      {"invalid \xff\xc3", "invalid \uFFFD\uFFFD"},
      {"overlong \xc0\xaf", "overlong \uFFFD\uFFFD"},
      {"surrogate \xed\xa0\x80", "surrogate \uFFFD\uFFFD\uFFFD"},
      {"\uFFFE\uFDD0", "\uFFFD\uFFFD"},
      {"\u0328alone", "\u25CC\u0328alone"},
      {"\u200Dalone", "\u25CC\u200Dalone"},
      {"🏽alone", "\u25CC🏽alone"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(shown(text).text, expected) << text;
}

TEST(ShownText, StaysAsItIsWhenShownAgain) {
  for (const std::string text : {"a\tb", "\x1b[1m", "\u0328x", "\u202E", "\xff", "👩‍👩", "🇵\u200B🇱"}) {
    EXPECT_EQ(shown(shown(text).text).text, shown(text).text);
  }
}

TEST(Lines, BreakAtBlanks) {
  EXPECT_THAT(lines("Brak połączenia z Vambą.", 12), ElementsAre("Brak", "połączenia z", "Vambą."));
  EXPECT_THAT(lines("ab cd", 5), ElementsAre("ab cd"));
  EXPECT_THAT(lines("ab  cd", 4), ElementsAre("ab", "cd"));
  EXPECT_THAT(lines("ab cd   ", 5), ElementsAre("ab cd"));
}

TEST(Lines, BreakAWordThatIsLongerThanALine) {
  EXPECT_THAT(lines("nieprzemakalny płaszcz", 8), ElementsAre("nieprzem", "akalny", "płaszcz"));
}

TEST(Lines, BreakBesideWideCharacters) { EXPECT_THAT(lines("ab日本語", 6), ElementsAre("ab日本", "語")); }

TEST(Lines, KeepANoBreakSpaceTogether) { EXPECT_THAT(lines("a b\u00A0c", 4), ElementsAre("a", "b\u00A0c")); }

TEST(Lines, AreCutByAnEllipsisAtTheLimit) {
  EXPECT_THAT(lines("Narada zespołu", 14, 1), ElementsAre("Narada zespołu"));
  EXPECT_THAT(lines("Narada zespołu", 13, 1), ElementsAre("Narada zespo…"));
  EXPECT_THAT(lines("Narada zespołu", 8, 1), ElementsAre("Narada…"));
  EXPECT_THAT(lines("Narada zespołu", 1, 1), ElementsAre("…"));
  EXPECT_THAT(lines("raz dwa trzy cztery", 7, 2), ElementsAre("raz dwa", "trzy c…"));
  EXPECT_THAT(lines("raz dwa trzy", 7, 2), ElementsAre("raz dwa", "trzy"));
}

TEST(Lines, AreNeverCutInsideACluster) {
  EXPECT_THAT(lines("日本語", 5, 1), ElementsAre("日本…"));
  EXPECT_THAT(lines("日本語", 4, 1), ElementsAre("日…"));
  EXPECT_THAT(lines("a👩‍👩‍👧‍👦b", 3, 1), ElementsAre("a…"));
  EXPECT_THAT(lines("e\u0301e\u0301e\u0301", 2, 1), ElementsAre("e\u0301…"));
  EXPECT_THAT(lines("🇵🇱🇱🇹", 3, std::nullopt), ElementsAre("🇵🇱", "🇱🇹"));
}

TEST(Lines, ShowAnEllipsisForAClusterWiderThanALine) { EXPECT_THAT(lines("a語b", 1), ElementsAre("a", "…", "b")); }

TEST(Lines, AreNoneForNothingOrWithoutAColumn) {
  EXPECT_THAT(lines("", 10), ElementsAre());
  EXPECT_THAT(lines("abc", 0), ElementsAre());
  EXPECT_THAT(lines("abc", 0, 1), ElementsAre());
}

}  // namespace
}  // namespace render::terminal
