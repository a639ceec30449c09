// Every family in every language, state, appearance and size of badge, plain and redacted, has a sound layout and is
// drawn within its box.
#include <gtest/gtest.h>

#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"
#include "render/support/golden_picture.hpp"
#include "render/support/layout_text.hpp"
#include "render/support/markup.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;

constexpr State states[] = {State::full,    State::empty,          State::noMeetings,
                            State::noTasks, State::overlongTitles, State::error};
constexpr Language languages[] = {Language::polish, Language::english, Language::lithuanian};

BoardForm formOf(Family family) {
  return family == Family::small ? smallFamily : family == Family::medium ? mediumFamily : largeFamily;
}

/// The number of texts in the tree.
std::size_t textsIn(const protocol::Node& node) {
  if (std::holds_alternative<protocol::TextNode>(node.kind)) return 1;
  std::size_t count = 0;
  const auto add = [&](const auto& children) {
    for (const auto& child : children) count += textsIn(child);
  };
  if (const auto* column = std::get_if<protocol::VStackNode>(&node.kind)) add(column->children);
  if (const auto* row = std::get_if<protocol::HStackNode>(&node.kind)) add(row->children);
  return count;
}

class Matrix : public ::testing::TestWithParam<std::tuple<Family, State>> {};

TEST_P(Matrix, EveryBoardIsWholeAndWithinItsBox) {
  const auto [family, state] = GetParam();
  for (const auto language : languages) {
    for (const std::int64_t awaiting : {1, 12, 12345}) {
      const auto tree = board(sampleContent(state, language, awaiting), family);
      auto drawing = prepare(tree, {.form = formOf(family)});
      ASSERT_TRUE(drawing);
      EXPECT_EQ(layoutFaults(drawing->board), "");
      std::size_t shown = 0;
      for (const auto& item : drawing->board.items) shown += std::holds_alternative<PlacedText>(item) ? 1U : 0U;
      EXPECT_EQ(shown, textsIn(tree)) << "a row is missing";
      // Header and badge are never cut.
      const auto svg = readMarkup(*drawSvg(tree, {.form = formOf(family)}));
      EXPECT_EQ(svg.fault, "");
      EXPECT_EQ(svg.named("text")[0].text, "Vamba");
      EXPECT_TRUE(svg.named("text")[1].text.starts_with(std::to_string(awaiting) + " "));
      EXPECT_FALSE(svg.named("text")[1].text.ends_with("…"));
    }
  }
}

TEST_P(Matrix, EveryPictureHasABackgroundOfItsAppearanceAndInkOnIt) {
  const auto [family, state] = GetParam();
  for (const auto language : languages) {
    const auto tree = board(sampleContent(state, language, 12), family);
    for (const auto appearance : {Appearance::light, Appearance::dark}) {
      for (const auto redaction : {Redaction::none, Redaction::placeholder}) {
        const auto file = drawPng(tree, {.form = formOf(family), .appearance = appearance, .redaction = redaction});
        ASSERT_TRUE(file);
        const auto bitmap = readPng(*file);
        const auto background = bitmap.at(bitmap.width / 2, 5);
        EXPECT_EQ(background.opacity, 255);
        EXPECT_EQ(background.red > 128, appearance == Appearance::light);
        std::size_t ink = 0;
        for (std::uint32_t y = 3; y < bitmap.height - 3; ++y) {
          for (std::uint32_t x = 3; x < bitmap.width - 3; ++x) {
            const bool bare = bitmap.at(x, y) == background;
            if (!bare) ++ink;
            // Between the hairline and the padding, away from the corners, nothing is painted.
            const bool margin = (x < 7 || x >= bitmap.width - 7) && y > 30 && y < bitmap.height - 30;
            if (margin) {
              ASSERT_TRUE(bare) << x << "," << y;
            }
          }
        }
        EXPECT_GT(ink, 400U);
      }
    }
  }
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<Family, State>>& given) {
  constexpr const char* families[] = {"Small", "Medium", "Large"};
  constexpr const char* names[] = {"Full", "Empty", "NoMeetings", "NoTasks", "OverlongTitles", "Error"};
  return std::string(families[static_cast<int>(std::get<0>(given.param))]) +
         names[static_cast<int>(std::get<1>(given.param))];
}

INSTANTIATE_TEST_SUITE_P(Boards, Matrix,
                         ::testing::Combine(::testing::Values(Family::small, Family::medium, Family::large),
                                            ::testing::ValuesIn(states)),
                         nameOf);

}  // namespace
}  // namespace render
