#include "render/type/typesetter.hpp"

#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"
#include "render/support/layout_text.hpp"
#include "render/support/random_trees.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace protocol;

Typesetter typesetter() {
  auto created = Typesetter::create("pl");
  EXPECT_TRUE(created.has_value());
  return std::move(*created);
}

const TextNode& textOf(const Node& node) { return std::get<TextNode>(node.kind); }

double widthOf(Typesetter& setter, View view) {
  // Must outlive the typesetter, which caches texts by address.
  static std::vector<std::unique_ptr<Node>> kept;
  kept.push_back(std::make_unique<Node>(std::move(view)));
  return setter.natural(textOf(*kept.back())).size.width;
}

std::string fontOf(Typesetter& setter, const Node& node) {
  const PlacedText placed{&textOf(node), {}, 0, 1000, 1};
  const auto lines = setter.lines(placed);
  auto* run = static_cast<PangoGlyphItem*>(lines.front().line->runs->data);
  const OwnedFontDescription description(pango_font_describe_with_absolute_size(run->item->analysis.font));
  const Owned<char, g_free> name(pango_font_description_to_string(description.get()));
  return name.get();
}

TEST(Typesetter, ShowsAKeyThatWasNotReplacedWithItsArguments) {
  const Node without = Text(LocalizedKey{"%lld do decyzji", {3}, std::nullopt});
  const Node with = Text(LocalizedKey{"%lld do decyzji", {3}, "Spręsti: 3"});
  auto setter = typesetter();
  EXPECT_EQ(setter.visible(textOf(without)), "3 do decyzji");
  EXPECT_EQ(setter.visible(textOf(with)), "Spręsti: 3");
}

TEST(Typesetter, StylesComeInTheirOwnSizesAndRealWeights) {
  auto setter = typesetter();
  const struct {
    Node node;
    std::string font;
  } cases[] = {
      {Text("Vamba").font(TextStyle::headline), "Inter Semi-Bold 15px"},
      {Text("Vamba").font(TextStyle::caption), "Inter 12px"},
      {Text("Vamba").font(TextStyle::caption2), "Inter 11px"},
      {Text("Vamba").font(TextStyle::caption2).weight(FontWeight::medium), "Inter Medium 11px"},
      {Text("Vamba").font(TextStyle::caption2).weight(FontWeight::semibold), "Inter Semi-Bold 11px"},
      {Text("Vamba").font(TextStyle::headline).weight(FontWeight::regular), "Inter 15px"},
      {Text("ĄĆĘŁŃÓŚŹŻ ąćęłńóśźż").font(TextStyle::caption), "Inter 12px"},
      {Text("ĄČĘĖĮŠŲŪŽ ąčęėįšųūž").font(TextStyle::caption), "Inter 12px"},
  };
  for (const auto& [node, font] : cases) EXPECT_EQ(fontOf(setter, node), font);
}

TEST(Typesetter, WordTooLongForALineIsPartedWithoutAHyphen) {
  auto setter = typesetter();
  const std::string word = "abcdefghij";
  const Node node = Text(word + word + word + word).font(TextStyle::caption);
  const auto extent = setter.within(textOf(node), 60, 100);
  ASSERT_TRUE(extent);
  ASSERT_GT(extent->lines, 2);
  int glyphs = 0;
  for (const auto& line : setter.lines({&textOf(node), {}, 0, 60, extent->lines})) {
    for (const GSList* run = line.line->runs; run != nullptr; run = run->next) {
      glyphs += static_cast<PangoGlyphItem*>(run->data)->glyphs->num_glyphs;
    }
  }
  EXPECT_EQ(glyphs, 40);
}

TEST(Typesetter, DigitsHaveEqualAdvancesWhereAsked) {
  auto setter = typesetter();
  const auto width = [&](const std::string& digits, bool equal) {
    return equal ? widthOf(setter, Text(digits).font(TextStyle::caption2).monospacedDigit())
                 : widthOf(setter, Text(digits).font(TextStyle::caption2));
  };
  EXPECT_DOUBLE_EQ(width("11:11", true), width("08:00", true));
  EXPECT_LT(width("11:11", false), width("08:00", false) - 1);
}

TEST(Typesetter, LettersThatInterLacksComeFromAnotherFont) {
  auto setter = typesetter();
  for (const std::string text : {"שלום", "مرحبا", "ქართული", "Հայերեն"}) {
    const Node node = Text(text);
    const auto lines = setter.lines({&textOf(node), {}, 0, 1000, 1});
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(pango_layout_get_unknown_glyphs_count(lines[0].line->layout), 0) << text;
  }
}

TEST(Typesetter, CutTextEndsInAnEllipsisAndFitsItsWidth) {
  auto setter = typesetter();
  const Node node = Text("Wysłać wniosek grantowy do końca tygodnia").lineLimit(1);
  const auto extent = setter.within(textOf(node), 100, 1);
  ASSERT_TRUE(extent);
  EXPECT_LE(extent->size.width, 100);
  EXPECT_EQ(extent->lines, 1);
  const auto lines = setter.lines({&textOf(node), {0, 0, 100, 20}, 0, 100, 1});
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0].shown.starts_with("Wysłać wn") && lines[0].shown.ends_with("…")) << lines[0].shown;
}

TEST(Typesetter, LinesBreakAtWordsAndKeepTheLimit) {
  auto setter = typesetter();
  const Node node = Text("one two\nthree four five six seven eight nine ten eleven twelve");
  const auto limited = setter.within(textOf(node), 60, 3);
  ASSERT_TRUE(limited);
  EXPECT_EQ(limited->lines, 3);
  const auto lines = setter.lines({&textOf(node), {5, 7, 60, 50}, 0, 60, 3});
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].shown, "one two");
  EXPECT_TRUE(lines[2].shown.ends_with("…")) << lines[2].shown;
  EXPECT_DOUBLE_EQ(lines[0].x, 5);
  EXPECT_DOUBLE_EQ(lines[0].baseline, 7 + limited->firstBaseline);
  EXPECT_GT(setter.within(textOf(node), 60, unlimitedLines)->lines, 3);
}

TEST(Typesetter, NothingFitsWhereNotEvenAnEllipsisDoes) {
  auto setter = typesetter();
  const Node node = Text("Vamba").lineLimit(1);
  EXPECT_EQ(setter.within(textOf(node), 2, 1), std::nullopt);
  EXPECT_EQ(setter.within(textOf(node), 0, unlimitedLines), std::nullopt);
}

TEST(Typesetter, RightToLeftTextIsShapedRightToLeft) {
  auto setter = typesetter();
  const Node node = Text("שלום 123");
  const auto lines = setter.lines({&textOf(node), {10, 0, 200, 20}, 0, 200, 1});
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0].rightToLeft);
  EXPECT_EQ(lines[0].x, 10) << "the line itself stands at the leading edge";
  // The digits come first from the left although they come last in the text.
  int first = 0;
  pango_layout_line_x_to_index(lines[0].line, PANGO_SCALE, &first, nullptr);
  EXPECT_GE(first, 9);
}

TEST(Typesetter, MeasuresAreTheSameWheneverTheyAreAsked) {
  auto setter = typesetter();
  const Node node = Text("Wysłać wniosek grantowy do końca tygodnia");
  const auto wide = setter.within(textOf(node), 1000, unlimitedLines);
  const auto narrow = setter.within(textOf(node), 80, unlimitedLines);
  const auto cut = setter.within(textOf(node), 80, 1);
  EXPECT_EQ(setter.within(textOf(node), 80, unlimitedLines), narrow);
  EXPECT_EQ(setter.within(textOf(node), 1000, unlimitedLines), wide);
  EXPECT_EQ(setter.within(textOf(node), 80, 1), cut);
  EXPECT_EQ(setter.within(textOf(node), 1000, unlimitedLines), setter.natural(textOf(node)));
}

TEST(BoardsInRealFonts, FullestBoardIsWholeInEveryFamily) {
  using namespace render::testing;
  for (const auto language : {Language::polish, Language::english, Language::lithuanian}) {
    const auto content = sampleContent(State::overlongTitles, language, 12345);
    const std::pair<Family, BoardForm> families[] = {
        {Family::small, smallFamily}, {Family::medium, mediumFamily}, {Family::large, largeFamily}};
    for (const auto& [family, form] : families) {
      const Node tree = render::testing::board(content, family);
      auto setter = typesetter();
      const auto laidOut = layOut(tree, form, setter);
      EXPECT_EQ(layoutFaults(laidOut), "");
      const auto& last = std::get<PlacedText>(laidOut.items.back());
      EXPECT_EQ(setter.visible(*last.text).substr(0, 2), "i ") << "the line of what is not shown ends the board";
      EXPECT_TRUE(laidOut.whole);
      EXPECT_GE(laidOut.magnification, 1) << "captions of 12 points and of 11";
    }
  }
}

TEST(BoardsInRealFonts, RandomTreesNeitherOverlapNorLeaveTheBox) {
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    const auto tree = render::testing::randomTree(seed);
    auto setter = typesetter();
    ASSERT_EQ(render::testing::layoutFaults(layOut(tree, mediumFamily, setter)), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace render
