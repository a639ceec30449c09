#include "render/picture/svg_writer.hpp"

#include <gtest/gtest.h>

namespace render {
namespace {

TEST(SvgWriter, EscapesContentAndAttributes) {
  SvgWriter writer;
  writer.element("text").attribute("a", "\"<&>'").content("1 < 2 && \"x\" > 'y'");
  EXPECT_EQ(std::move(writer).take(),
            "<text a=\"&quot;&lt;&amp;&gt;&#39;\">1 &lt; 2 &amp;&amp; &quot;x&quot; &gt; &#39;y&#39;</text>\n");
}

TEST(SvgWriter, WritesNumbersShort) {
  const std::pair<double, std::string> cases[] = {{0, "0"},          {-0.0001, "0"},           {12, "12"},
                                                  {1.5, "1.5"},      {1.23456, "1.235"},       {-3.14159, "-3.142"},
                                                  {480.0004, "480"}, {1234567.5, "1234567.5"}, {0.1 + 0.2, "0.3"}};
  for (const auto& [value, text] : cases) {
    std::string written;
    appendNumber(written, value);
    EXPECT_EQ(written, text);
  }
}

TEST(SvgWriter, WritesOpacityOnlyWhereThereIsSome) {
  SvgWriter writer;
  writer.element("g").colour("fill", {0x1A, 0x0B, 0xFF}).colour("stroke", {0, 0, 0, 0.25}).close();
  EXPECT_EQ(std::move(writer).take(), "<g fill=\"#1a0bff\" stroke=\"#000000\" stroke-opacity=\"0.25\"/>\n");
}

}  // namespace
}  // namespace render
