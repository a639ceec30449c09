#include "host/extension/printable.hpp"

#include <gtest/gtest.h>

namespace host {
namespace {

struct Case {
  const char* text;
  const char* shown;
};
const Case cases[] = {
    {"plain text\n\tand more", "plain text\n\tand more"},
    {"zażółć 漢 😀", "zażółć 漢 😀"},
    {"\x1b[31mred\x7f\r\b", "?[31mred???"},
    {"a\u009b31mb", "a?31mb"},  // C1 in UTF-8
    {"a\x9b"
     "31mb",
     "a?31mb"},  // C1 as a raw byte
    {"\u202Eover\u202C\u2066isolate\u2069", "?over??isolate?"},
    {"\u200Emark\u061C\u2028line", "?mark??line"},
    {"\xc3(\xe2\x82(\xf0\x9f\x98(",
     "?("
     "??"
     "("
     "???"
     "("},
    {"\xc0\x9b\xe0\x80\x9b\xed\xa0\x80\xf4\x90\x80\x80\xff", "?????????????"},
};

TEST(Printable, LeavesTextAndReplacesWhatATerminalObeys) {
  for (const auto& [text, shown] : cases) EXPECT_EQ(printable(text), shown) << text;
}

TEST(Printable, DoesNotMindWhereWhatArrivesIsCut) {
  for (const auto& [whole, shown] : cases) {
    const std::string_view text = whole;
    for (std::size_t first = 0; first <= text.size(); ++first) {
      for (std::size_t second = first; second <= text.size(); ++second) {
        PrintableStream stream;
        std::string passed = stream.pass(text.substr(0, first));
        passed += stream.pass(text.substr(first, second - first));
        passed += stream.pass(text.substr(second));
        EXPECT_EQ(passed + stream.finish(), shown) << first << ", " << second;
      }
    }
  }
}

}  // namespace
}  // namespace host
