#include "base/text/control_characters.hpp"

#include <gtest/gtest.h>

namespace base {
namespace {

std::string starred(std::string_view text) {
  return replaceControls(text, [](char32_t) { return std::string("*"); });
}

TEST(ControlCharacters, AreC0AndDelAndC1) {
  EXPECT_EQ(starred("\x1b[31mred\x7f\r"), "*[31mred**");
  EXPECT_EQ(starred("a\tb\n"), "a*b*");
  EXPECT_EQ(starred("\xc2\x80\xc2\x9b\xc2\x9f\xc2\xa0"), "***\xc2\xa0");
  EXPECT_EQ(starred(std::string_view("\0x", 2)), "*x");
  EXPECT_EQ(starred("zażółć 😀"), "zażółć 😀");
  EXPECT_EQ(starred(""), "");
}

TEST(ControlCharacters, ABareByteCountsAsTheCharacterOfItsValue) {
  EXPECT_EQ(starred("a\x9b"
                    "31m"),
            "a*31m");
  EXPECT_EQ(starred("\xc2"), "\xc2");
  EXPECT_EQ(starred("\xff\xc4"), "\xff\xc4");
}

TEST(ControlCharacters, TheReplacementSeesTheCharacter) {
  std::u32string seen;
  replaceControls("\x01-\xc2\x85-\x84", [&](char32_t control) {
    seen += control;
    return std::string();
  });
  EXPECT_EQ(seen, U"\u0001\u0085\u0084");
}

TEST(ControlCharacters, AreFoundInText) {
  EXPECT_TRUE(holdsControl("a\n"));
  EXPECT_TRUE(holdsControl("\xc2\x9b"));
  EXPECT_FALSE(holdsControl("zażółć"));
  EXPECT_FALSE(holdsControl(""));
}

}  // namespace
}  // namespace base
