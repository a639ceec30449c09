#include "render/type/visible_text.hpp"

#include <limits>

#include <gtest/gtest.h>

namespace render {
namespace {

TEST(VisibleText, KeepsWhatIsReadableAndDropsWhatIsNot) {
  const struct {
    std::string given;
    std::string shown;
  } cases[] = {{"", ""},
               {"Żółta gęś", "Żółta gęś"},
               {"שלום", "שלום"},
               {"\U0001F468\u200D\U0001F467", "\U0001F468\u200D\U0001F467"},
               {"a\tb", "a b"},
               {"\x1b[31mred", "[31mred"},
               {std::string("a\0b", 3), "ab"},
               {"a\x7f\u009bb", "ab"},
               {"\xff", "\uFFFD"},
               {"\xc3", "\uFFFD"},
               {"\xc3(", "\uFFFD("},
               {"\xc0\x80", "\uFFFD\uFFFD"},
               {"\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"},
               {"\xf4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
               {"\xe2\x82", "\uFFFD\uFFFD"},
               {"\uFFFE\uFFFF\uFDD0", "\uFFFD\uFFFD\uFFFD"}};
  for (const auto& [given, shown] : cases) {
    EXPECT_EQ(visibleText(given, 1), shown) << ::testing::PrintToString(given);
  }
}

TEST(VisibleText, LineEndsPartLinesWhereThereMayBeSeveral) {
  for (const std::string end : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"}) {
    EXPECT_EQ(visibleText("a" + end + "b", 1), "a b");
    EXPECT_EQ(visibleText("a" + end + "b", 2), "a\u2028b");
  }
}

TEST(VisibleText, IsCutBeyondWhatAnyBoardHolds) {
  const std::string megabytes(5'000'000, 'x');
  std::string cut(600, 'x');
  cut += "\u2026";
  EXPECT_EQ(visibleText(megabytes, 1), cut);
  EXPECT_LE(visibleText(megabytes, std::numeric_limits<int>::max()).size(), 16400U);
}

}  // namespace
}  // namespace render
