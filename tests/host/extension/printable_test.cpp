#include "host/extension/printable.hpp"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(Printable, LetsNoEscapeSequencePass) {
  EXPECT_EQ(printable("a\tb\n"), "a\tb\n");
  EXPECT_EQ(printable("\x1b[31mred\x7f\r"), "?[31mred??");
  EXPECT_EQ(printable("\xc2\x9b"
                      "31m"),
            "?31m");
  EXPECT_EQ(printable("zażółć \xc2\xa0\xc2"), "zażółć \xc2\xa0\xc2");
  EXPECT_EQ(printable(std::string_view("\0x", 2)), "?x");
}

}  // namespace
}  // namespace host
