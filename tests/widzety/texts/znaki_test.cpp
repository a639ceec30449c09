#include "widzety/texts/znaki.hpp"

#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <utf8proc.h>

namespace widzety {
namespace {

TEST(TableCharacters, AcceptPrecomposedPolishAndLithuanian) {
  for (const std::string_view tekst :
       {"", "a ~", "dziś\njutro", "Zażółć gęślą jaźń", "„Užduotys“ — “Tasks” → ąčęėįšųūž…"}) {
    EXPECT_TRUE(zDozwolonychZnakow(tekst)) << tekst;
  }
}

TEST(TableCharacters, RefuseWhatIsNotNormalisedNotReviewedOrNotUtf8) {
  using namespace std::string_view_literals;
  const struct {
    std::string_view nazwa;
    std::string_view tekst;
  } przypadki[] = {
      {"combining ogonek", "dzie\u0328"},
      {"a mark alone", "\u0301"},
      {"letter outside both alphabets", "caf\u00E9"},
      {"singleton that NFC replaces", "\u212A"},
      {"no-break space", "na\u00A0dziś"},
      {"tab", "a\tb"},
      {"NUL", "a\0b"sv},
      {"four bytes", "\U0001F600"},
      {"lone continuation byte", "\x85"},
      {"Latin-1 letter", "dzi\xB6"},
      {"cut after two bytes of three", "\xE2\x80"},
      {"cut after one byte of two", "dzi\xC5"},
      {"letter inside a sequence", "\xC5z\x82"},
      {"overlong a in two bytes", "\xC1\xA1"},
      {"overlong ó in three bytes", "\xE0\x83\xB3"},
      {"byte that begins nothing", "\xFF"},
  };
  for (const auto& [nazwa, tekst] : przypadki) EXPECT_FALSE(zDozwolonychZnakow(tekst)) << nazwa;
}

TEST(TableCharacters, AreStartersThatNormalisationLeavesAloneNextToOneAnother) {
  const auto utf8 = [](char32_t znak) {
    utf8proc_uint8_t bajty[4];
    const auto ile = utf8proc_encode_char(static_cast<utf8proc_int32_t>(znak), bajty);
    return std::string(bajty, bajty + ile);
  };
  std::u32string znaki(dozwoloneZnaki);
  for (char32_t ascii = U' '; ascii <= U'~'; ++ascii) znaki += ascii;
  for (const auto a : znaki) {
    EXPECT_EQ(utf8proc_get_property(static_cast<utf8proc_int32_t>(a))->combining_class, 0) << utf8(a);
    for (const auto b : znaki) {
      const auto para = utf8(a) + utf8(b);
      const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> nfc(
          utf8proc_NFC(reinterpret_cast<const utf8proc_uint8_t*>(para.c_str())), &std::free);
      ASSERT_EQ(para, reinterpret_cast<const char*>(nfc.get()));
    }
  }
}

}  // namespace
}  // namespace widzety
