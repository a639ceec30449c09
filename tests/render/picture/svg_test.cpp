#include <absl/strings/str_replace.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"
#include "render/picture/picture.hpp"
#include "render/support/markup.hpp"
#include "render/support/random_trees.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace protocol;
using namespace render::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

Markup svgOf(const Node& tree, const PictureOptions& options = {}) {
  const auto file = drawSvg(tree, options);
  EXPECT_TRUE(file.has_value());
  auto markup = readMarkup(*file);
  EXPECT_EQ(markup.fault, "");
  return markup;
}

std::vector<std::string> textsOf(const Markup& svg) {
  std::vector<std::string> texts;
  for (const auto& element : svg.named("text")) texts.push_back(element.text);
  return texts;
}

BoardContent shortBoard() {
  return {.awaiting = 3,
          .meetings = {{"09:30", "Narada <b>zespołu</b> & inni", "Pracownia", "jutro"}},
          .tasks = {{12, "Wysłać wniosek", "Wdrożenie", "zaległe"}}};
}

TEST(Svg, HoldsItsTextsAsTextInReadingOrder) {
  const auto svg = svgOf(board(shortBoard(), Family::medium));
  EXPECT_THAT(textsOf(svg), ElementsAre("Vamba", "3 do decyzji", "09:30", "Narada <b>zespołu</b> & inni", "Pracownia",
                                        "jutro", "#12", "Wysłać wniosek", "Wdrożenie", "zaległe"));
  EXPECT_EQ(svg.named("g").front().attribute("font-family"), "Inter,sans-serif");
}

TEST(Svg, IsReadAloudByItsTitleAndDescription) {
  const auto svg = svgOf(board(shortBoard(), Family::medium), {.title = "Vamba — spotkania", .language = "pl"});
  const auto root = svg.named("svg").front();
  EXPECT_EQ(root.attribute("role"), "img");
  EXPECT_EQ(root.attribute("lang"), "pl");
  const auto title = svg.named("title").front();
  const auto description = svg.named("desc").front();
  EXPECT_EQ(title.text, "Vamba — spotkania");
  EXPECT_THAT(description.text, StartsWith("Vamba, 3 do decyzji\n09:30, Narada"));
  EXPECT_EQ(root.attribute("aria-labelledby"), title.attribute("id") + " " + description.attribute("id"));
}

TEST(Svg, WearsAPersonsAccentExactlyWhereTheTintWas) {
  const auto tree = board(shortBoard(), Family::medium);
  const auto usual = drawSvg(tree, {});
  const auto accented = drawSvg(tree, {.accent = Colour{0x80, 0x20, 0x90}});
  ASSERT_TRUE(usual && accented);
  EXPECT_THAT(*usual, HasSubstr("#1a62d6"));
  EXPECT_EQ(*accented, absl::StrReplaceAll(*usual, {{"#1a62d6", "#802090"}}));
}

TEST(Svg, WithoutATitleNamesTheDescriptionAlone) {
  const auto svg = svgOf(board(shortBoard(), Family::small), {.form = smallFamily});
  EXPECT_TRUE(svg.named("title").empty());
  EXPECT_EQ(svg.named("svg").front().attribute("aria-labelledby"), "board-desc");
}

TEST(Svg, TextsCarryTheirStyle) {
  const auto svg =
      svgOf(VStack({}, {Text("Vamba").font(TextStyle::headline), Text("09:30")
                                                                     .font(TextStyle::caption2)
                                                                     .weight(FontWeight::semibold)
                                                                     .monospacedDigit()
                                                                     .foregroundStyle(ForegroundStyle::tint)}));
  const auto texts = svg.named("text");
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0].attribute("font-size"), "15");
  EXPECT_EQ(texts[0].attribute("font-weight"), "600");
  EXPECT_EQ(texts[0].attribute("style"), "");
  EXPECT_EQ(texts[1].attribute("font-size"), "11");
  EXPECT_EQ(texts[1].attribute("style"), "font-variant-numeric:tabular-nums");
  EXPECT_EQ(texts[1].attribute("fill"), "#1a62d6");
}

TEST(Svg, CutTextEndsInAnEllipsisButIsReadAloudWhole) {
  const std::string title(200, 'm');
  const auto svg = svgOf(Text(title).lineLimit(1));
  ASSERT_EQ(textsOf(svg).size(), 1U);
  EXPECT_THAT(textsOf(svg)[0], ::testing::EndsWith("m…"));
  EXPECT_LT(textsOf(svg)[0].size(), 100U);
  EXPECT_EQ(svg.named("desc").front().text, title);
}

TEST(Svg, RightToLeftLineBeginsAtItsRightEdge) {
  const auto svg = svgOf(Text("שלום עולם"));
  const auto text = svg.named("text").front();
  EXPECT_EQ(text.attribute("direction"), "rtl");
  EXPECT_EQ(text.attribute("x"), text.attribute("textLength")) << "the line begins at the leading edge, 0";
}

TEST(Svg, OutlinesNeedNoFontAndAreReadAloudAllTheSame) {
  const auto svg = svgOf(board(shortBoard(), Family::medium), {.lettering = Lettering::outlines});
  EXPECT_TRUE(svg.named("text").empty());
  EXPECT_GE(svg.named("path").size(), 12U) << "one a text, with the board and its badge";
  EXPECT_THAT(svg.named("desc").front().text, HasSubstr("zaległe"));
}

TEST(Svg, OutlinesReachTheFarEndOfALine) {
  const Node tree = HStack({}, {Text("I"), Spacer(0), Text("I")});
  const auto svg = svgOf(tree, {.form = largeFamily, .scale = 3, .lettering = Lettering::outlines});
  const auto paths = svg.named("path");
  ASSERT_EQ(paths.size(), 2U);
  EXPECT_GT(std::stod(paths[1].attribute("d").substr(1)), 1400);
}

TEST(Svg, RulesAndBaselinesAreWholePixelsAtTheirScale) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    const auto svg = svgOf(board(sampleContent(State::full, Language::polish, 3), Family::medium), {.scale = scale});
    for (const auto& text : svg.named("text")) EXPECT_THAT(text.attribute("y"), ::testing::Not(HasSubstr(".")));
    for (const auto& rule : svg.named("rect")) {
      for (const char* edge : {"x", "y", "width", "height"}) {
        EXPECT_THAT(rule.attribute(edge), ::testing::Not(HasSubstr(".")));
      }
    }
  }
}

TEST(Svg, AnyTreeAndTitleGiveWellFormedMarkup) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    const auto tree = randomTree(seed);
    for (const auto lettering : {Lettering::text, Lettering::outlines}) {
      const auto svg = svgOf(tree, {.lettering = lettering, .title = "]]><script>\x01\xff&\"", .language = "\"<x"});
      ASSERT_EQ(svg.fault, "") << seed;
      EXPECT_TRUE(svg.named("script").empty());
    }
  }
}

TEST(Svg, IsTheSameBytesForTheSameInput) {
  const auto tree = board(shortBoard(), Family::medium);
  EXPECT_EQ(*drawSvg(tree, {}), *drawSvg(tree, {}));
  EXPECT_EQ(*drawSvg(tree, {.lettering = Lettering::outlines}), *drawSvg(tree, {.lettering = Lettering::outlines}));
}

}  // namespace
}  // namespace render
