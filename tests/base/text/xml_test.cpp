#include "base/text/xml.hpp"

#include <gtest/gtest.h>

namespace base {
namespace {

TEST(EscapedForXml, EscapesTheFiveCharactersWithAMeaning) {
  EXPECT_EQ(escapedForXml(R"(a < b & "c" > 'd')"), "a &lt; b &amp; &quot;c&quot; &gt; &#39;d&#39;");
  EXPECT_EQ(escapedForXml("&amp;"), "&amp;amp;");
  EXPECT_EQ(escapedForXml("zażółć\n"), "zażółć\n");
}

}  // namespace
}  // namespace base
