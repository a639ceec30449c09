#include "desktop/program/boards.hpp"

#include <gtest/gtest.h>

#include "host/texts/fewer_rows.hpp"
#include "protocol/view_tree/builders.hpp"

namespace desktop {
namespace {

using namespace protocol;

/// A day of this many tasks, more than the extension ever sends.
Node dayOf(int tasks) {
  std::vector<Node> rows;
  for (int i = 1; i <= tasks; ++i) {
    rows.push_back(
        View(HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                    {Text(key("#%lld", std::int64_t{i})).font(TextStyle::caption2), Text("Task").lineLimit(1)}))
            .id(std::to_string(i)));
  }
  return VStack({.spacing = 6}, {HStack({}, {Text(key("Vamba")).font(TextStyle::headline)}), Views(std::move(rows))})
      .padding(12)
      .containerBackground(ContainerBackground::background);
}

std::size_t linesOf(const Node& board) { return std::get<VStackNode>(board.kind).children.size(); }

std::string lastLineOf(const Node& board) {
  return std::get<Verbatim>(std::get<TextNode>(std::get<VStackNode>(board.kind).children.back().kind).content).text;
}

bool fits(const Node& board, WidgetFamily family) { return render::fits(board, {.form = render::familyForm(family)}); }

TEST(BoardInBox, KeepsAllRowsThatFit) {
  EXPECT_EQ(boardInBox(dayOf(3), WidgetFamily::systemMedium, host::Language::english),
            host::localised(dayOf(3), host::Language::english));
}

TEST(BoardInBox, LeavesOutAndCountsTheRowsThatDoNot) {
  constexpr int tasks = 40;
  for (const auto family : {WidgetFamily::systemSmall, WidgetFamily::systemMedium, WidgetFamily::systemLarge}) {
    const auto board = boardInBox(dayOf(tasks), family, host::Language::english);
    EXPECT_TRUE(fits(board, family)) << nameOf(family);
    // The header and the last line are not rows.
    const int hidden = tasks - static_cast<int>(linesOf(board) - 2);
    EXPECT_GT(hidden, 0) << nameOf(family);
    EXPECT_EQ(lastLineOf(board), "and " + std::to_string(hidden) + " more") << nameOf(family);
    const auto oneMore = host::withoutLastRows(dayOf(tasks), hidden - 1).value();
    EXPECT_FALSE(fits(host::localised(oneMore, host::Language::english), family)) << nameOf(family);
  }
}

}  // namespace
}  // namespace desktop
