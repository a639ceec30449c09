#include "render/layout/layout.hpp"

#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"
#include "render/layout/family_form.hpp"
#include "render/support/layout_text.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace protocol;
using render::testing::PlainMeasurer;

std::string layoutOf(const Node& tree, const BoardForm& form) {
  PlainMeasurer measurer;
  return render::testing::layoutText(layOut(tree, form, measurer));
}

TEST(Layout, ColumnStandsAtTheTopLeftWithSpacingAndPadding) {
  const Node tree = VStack({.spacing = 6}, {Text("one"), Text("three")}).padding(EdgeInsets{1, 2, 3, 4});
  EXPECT_EQ(layoutOf(tree, {{100, 50}}), R"(board 100x50
text 2,1 18x10 baseline 9 one
text 2,17 30x10 baseline 25 three
)");
}

TEST(Layout, SpacerPushesWhatFollowsToTheTrailingEdge) {
  const Node tree = HStack({.spacing = 6}, {Text("a"), Spacer(0), Text("bc")});
  EXPECT_EQ(layoutOf(tree, {{100, 50}}), R"(board 100x50
text 0,0 6x10 baseline 8 a
text 88,0 12x10 baseline 8 bc
)");
}

TEST(Layout, SpacersShareTheRoomEvenlyInRowsAndColumns) {
  const Node row = HStack({.spacing = 0}, {Spacer(0), Text("a"), Spacer(10)});
  EXPECT_EQ(layoutOf(row, {{106, 50}}), "board 106x50\ntext 45,0 6x10 baseline 8 a\n");
  const Node column = VStack({.spacing = 0}, {Spacer(0), Text("a"), Spacer(0), Text("b")});
  EXPECT_EQ(layoutOf(column, {{100, 50}}),
            "board 100x50\ntext 0,15 6x10 baseline 23 a\ntext 0,40 6x10 baseline 48 b\n");
}

TEST(Layout, FirstBaselinesAreLinedUp) {
  const Node tree = HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                           {Text("a"), VStack({.spacing = 2}, {Text("B").font(TextStyle::headline), Text("c")})});
  EXPECT_EQ(layoutOf(tree, {{100, 50}}), R"(board 100x50
text 0,4 6x10 baseline 12 a
text 12,0 10x16 baseline 12 B
text 12,18 6x10 baseline 26 c
)");
}

TEST(Layout, CentredRowCentresItsLowerChildren) {
  const Node tree =
      HStack({.alignment = VerticalAlignment::center, .spacing = 0}, {Text("B").font(TextStyle::headline), Text("c")});
  EXPECT_EQ(layoutOf(tree, {{100, 50}}), "board 100x50\ntext 0,0 10x16 baseline 12 B\ntext 10,3 6x10 baseline 11 c\n");
}

TEST(Layout, CapsuleStandsBehindThePaddedText) {
  const Node tree = HStack({}, {Text("12").padding(EdgeInsets{2, 6, 2, 6}).background(CapsuleBackground{})});
  EXPECT_EQ(layoutOf(tree, {{100, 50}}), "board 100x50\ncapsule 0,0 24x14\ntext 6,2 12x10 baseline 10 12\n");
}

TEST(Layout, DividerCrossesItsStack) {
  const Node column = VStack({.spacing = 6}, {Text("a"), Divider().padding(EdgeInsets{1, 0, 1, 0}), Text("b")});
  EXPECT_EQ(layoutOf(column, {{100, 50}}),
            "board 100x50\ntext 0,0 6x10 baseline 8 a\nrule 0,17 100x1\ntext 0,25 6x10 baseline 33 b\n");
  const Node row = HStack({.spacing = 2}, {Text("a").font(TextStyle::headline), Divider(), Text("b")});
  EXPECT_EQ(layoutOf(row, {{100, 50}}),
            "board 100x50\ntext 0,0 10x16 baseline 12 a\nrule 12,0 1x16\ntext 15,3 6x10 baseline 11 b\n");
}

TEST(Layout, LinesOfTextWithoutNamedSpacingStandAsInAParagraph) {
  const Node tree = VStack({}, {Text("a"), Text("b"), Divider()});
  EXPECT_EQ(layoutOf(tree, {{50, 50}}),
            "board 50x50\ntext 0,0 6x10 baseline 8 a\ntext 0,10 6x10 baseline 18 b\nrule 0,28 50x1\n");
}

TEST(Layout, LongTextGivesWayToItsShortNeighbours) {
  const Node tree = HStack({.spacing = 6}, {Text("#12"), Text("a title that is far too long").lineLimit(1), Text("z")});
  EXPECT_EQ(layoutOf(tree, {{100, 50}}), R"(board 100x50
text 0,0 18x10 baseline 8 #12
text 24,0 60x10 baseline 8 a title that is far too long
text 90,0 6x10 baseline 8 z
)");
}

TEST(Layout, UnlimitedTextTakesTheLinesItNeedsAndLimitedTextNoMore) {
  const std::string text(25, 'x');
  EXPECT_EQ(layoutOf(Text(text), {{60, 50}}), "board 60x50\ntext 0,0 60x30 baseline 8 " + text + "\n");
  EXPECT_EQ(layoutOf(Text(text).lineLimit(2), {{60, 50}}), "board 60x50\ntext 0,0 60x20 baseline 8 " + text + "\n");
}

TEST(Layout, BoardThatIsTooHighDropsRowsFromTheBottomWholeAndSaysSo) {
  const auto row = [](const std::string& text) { return HStack({}, {Text(text)}); };
  const Node tree =
      VStack({.spacing = 0}, {row("1"), row("2"), Divider(), row("3"), row("4"), row("5"), row("6"), row("7")});
  EXPECT_EQ(layoutOf(tree, {{40, 30}}), R"(board 40x30 cut
text 0,0 6x10 baseline 8 1
text 0,10 6x10 baseline 18 2
)") << "a divider with nothing below it goes too";
  EXPECT_TRUE(layoutOf(tree, {{40, 71}}).starts_with("board 40x71\n")) << "seven rows and a rule";
}

TEST(Layout, ParagraphThatIsTooHighEndsAtALine) {
  const Node tree = VStack({.spacing = 0}, {Text("head"), Text(std::string(200, 'x')), Text("below")});
  EXPECT_EQ(layoutOf(tree, {{60, 50}}),
            "board 60x50 cut\ntext 0,0 24x10 baseline 8 head\n"
            "text 0,10 60x40 baseline 18 " +
                std::string(200, 'x') + "\n");
}

TEST(Layout, MagnifiedFormShowsALargerBoard) {
  const Node tree = VStack({.spacing = 0}, {Text("1"), Text("2"), Text("3"), Text("4"), Text("5")});
  EXPECT_TRUE(layoutOf(tree, {{200, 100}, 2}).starts_with("board 100x50 at 200%\n")) << layoutOf(tree, {{200, 100}, 2});
  EXPECT_TRUE(layoutOf(tree, {{200, 75}, 2}).starts_with("board 100x37.5 at 200% cut\n"));
}

/// Lines with a fractional height, as in real fonts.
class AwkwardMeasurer final : public TextMeasurer {
 public:
  TextExtent natural(const TextNode& text) override { return stretched(plain_.natural(text)); }
  std::optional<TextExtent> within(const TextNode& text, double width, int maxLines) override {
    return plain_.within(text, width, maxLines).transform(stretched);
  }

 private:
  static TextExtent stretched(TextExtent extent) {
    extent.size.height *= 1.331;
    return extent;
  }
  PlainMeasurer plain_;
};

TEST(Layout, EqualRowsAreEquallyHighInPixels) {
  std::vector<Node> rows;
  for (int i = 0; i < 6; ++i) {
    rows.push_back(HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                          {Text("1"), VStack({}, {Text("a"), Text("b")})}));
  }
  const Node tree = VStack({.spacing = 5.3}, {Views(std::move(rows))});
  AwkwardMeasurer measurer;
  for (const double magnification : {1.0, 1.5}) {
    const auto board = layOut(tree, {{400, 400}, magnification}, measurer);
    for (const auto& item : board.items) {
      const auto& text = std::get<PlacedText>(item);
      const double top = text.frame.y * magnification;
      EXPECT_NEAR(top, std::round(top), 1e-9) << "at " << magnification;
    }
  }
}

/// A row with a narrow number and a column of two nodes, above a row with a wide number.
View narrowAndWideRow(View below) {
  const StackStyle<VerticalAlignment> aligned{.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6};
  return VStack({.spacing = 0}, {HStack(aligned, {Text("1"), VStack({.spacing = 0}, {Text("a"), std::move(below)})}),
                                 HStack(aligned, {Text("1234"), Text("b")})});
}

TEST(Layout, LeadingColumnIsKeptByARowThatGrows) {
  EXPECT_EQ(layoutOf(narrowAndWideRow(Spacer(0)), {{100, 50}}), R"(board 100x50
text 0,0 24x10 baseline 8 1
text 30,0 6x10 baseline 8 a
text 0,40 24x10 baseline 48 1234
text 30,40 6x10 baseline 48 b
)");
}

TEST(Layout, LeadingColumnIsKeptByARowThatIsCut) {
  EXPECT_EQ(layoutOf(narrowAndWideRow(Text("c")), {{100, 15}}), R"(board 100x15 cut
text 0,0 24x10 baseline 8 1
text 30,0 6x10 baseline 8 a
)");
}

TEST(Layout, LeadingColumnsOfRowsShareOneWidthUpToAQuarter) {
  const auto row = [](const std::string& lead, const std::string& text) {
    return HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6}, {Text(lead), Text(text)});
  };
  const Node tree = VStack({.spacing = 0}, {row("#1", "a"), row("09:05", "b"), row("#12345678901", "c")});
  EXPECT_EQ(layoutOf(tree, {{160, 50}}), R"(board 160x50
text 0,0 40x10 baseline 8 #1
text 46,0 6x10 baseline 8 a
text 0,10 40x10 baseline 18 09:05
text 46,10 6x10 baseline 18 b
text 0,20 72x10 baseline 28 #12345678901
text 78,20 6x10 baseline 28 c
)");
}

TEST(Layout, SentenceAloneBelowAHeaderStandsInTheMiddle) {
  const Node tree =
      VStack({.spacing = 6}, {HStack({}, {Text("Vamba"), Spacer(0)}), Text("Nothing for today.")}).padding(12);
  PlainMeasurer measurer;
  const auto board = layOut(tree, {{200, 100}}, measurer);
  const auto& sentence = std::get<PlacedText>(board.items.back());
  EXPECT_TRUE(sentence.centred);
  EXPECT_EQ(sentence.frame, (Rect{12, 53, 176, 10}));
  EXPECT_EQ(sentence.baseline, 61);
  EXPECT_FALSE(std::get<PlacedText>(board.items.front()).centred);
}

TEST(Layout, LengthsThatMakeNoSenseArePulledIntoRange) {
  const Node negative = VStack({.spacing = -20}, {Text("a"), Text("b")}).padding(EdgeInsets{-5, -5, -5, -5});
  EXPECT_EQ(layoutOf(negative, {{50, 50}}), "board 50x50\ntext 0,0 6x10 baseline 8 a\ntext 0,10 6x10 baseline 18 b\n");
  const Node wide = HStack({.spacing = 1e300}, {Text("a"), Text("b")});
  EXPECT_EQ(layoutOf(wide, {{50, 50}}), "board 50x50\n") << "no room for either";
}

TEST(Layout, EqualTreesGiveEqualBoards) {
  using namespace render::testing;
  const auto content = sampleContent(State::full, Language::polish, 12);
  EXPECT_EQ(layoutOf(board(content, Family::medium), mediumFamily),
            layoutOf(board(content, Family::medium), mediumFamily));
}

TEST(Layout, FullMediumBoardShowsEveryLine) {
  using namespace render::testing;
  const Node tree = board({.awaiting = 3,
                           .meetings = {{"09:05", "Narada", "Pracownia", "jutro"}},
                           .tasks = {{12, "Wniosek", "Pracownia", {}},
                                     {7, "Transkrypt", "", "zalegle"},
                                     {8, "x", "y", {}},
                                     {9, "z", "", {}}}},
                          Family::medium);
  EXPECT_EQ(layoutOf(tree, mediumFamily), R"(board 480x320
text 12,12 50x16 baseline 24 Vamba
capsule 384,13 84x14
text 390,15 72x10 baseline 23 3 do decyzji
text 12,34 30x10 baseline 42 09:05
text 48,34 36x10 baseline 42 Narada
text 48,44 54x10 baseline 52 Pracownia
text 48,54 30x10 baseline 62 jutro
rule 12,71 456x1
text 12,79 30x10 baseline 87 #12
text 48,79 42x10 baseline 87 Wniosek
text 48,89 54x10 baseline 97 Pracownia
text 12,105 30x10 baseline 113 #7
text 48,105 60x10 baseline 113 Transkrypt
text 48,115 0x10 baseline 123 
text 48,125 42x10 baseline 133 zalegle
text 12,141 30x10 baseline 149 #8
text 48,141 6x10 baseline 149 x
text 48,151 6x10 baseline 159 y
text 12,167 60x10 baseline 175 i 1 więcej
)");
}

}  // namespace
}  // namespace render
