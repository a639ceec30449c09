#include "host/texts/fewer_rows.hpp"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"

namespace host {
namespace {

using namespace protocol;

Node row(const std::string& text) { return View(HStack({}, {Text(text)})).id(text); }

/// As the day widget makes them.
Node board(const std::vector<std::string>& meetings, const std::vector<std::string>& tasks, std::int64_t hidden) {
  std::vector<Node> above;
  std::vector<Node> below;
  for (const auto& text : meetings) above.push_back(row(text));
  for (const auto& text : tasks) below.push_back(row(text));
  return VStack(
      {},
      {HStack({}, {Text("head")}), Views(std::move(above)), when(!tasks.empty(), [] { return Divider(); }),
       Views(std::move(below)), when(hidden > 0, [&] {
         return Text(key("i %lld więcej", hidden)).font(TextStyle::caption2).foregroundStyle(ForegroundStyle::tertiary);
       })});
}

TEST(FewerRows, GoFromTheEndAndAreCountedInTheLastLine) {
  const Node full = board({"m1", "m2"}, {"t1", "t2", "t3"}, 4);
  EXPECT_EQ(withoutLastRows(full, 0), full);
  EXPECT_EQ(withoutLastRows(full, 1), board({"m1", "m2"}, {"t1", "t2"}, 5));
  EXPECT_EQ(withoutLastRows(full, 2), board({"m1", "m2"}, {"t1"}, 6));
}

TEST(FewerRows, AddTheLineWhereAFullBoardHadNone) {
  EXPECT_EQ(withoutLastRows(board({"m1"}, {"t1", "t2"}, 0), 1), board({"m1"}, {"t1"}, 1));
}

TEST(FewerRows, AreCountedUpToTheLargestNumber) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(withoutLastRows(board({"m1"}, {"t1", "t2"}, most), 1), board({"m1"}, {"t1"}, most));
  EXPECT_EQ(withoutLastRows(board({"m1"}, {"t1", "t2"}, most - 1), 1), board({"m1"}, {"t1"}, most));
}

TEST(FewerRows, LeaveNoDividerThatPartsNothing) {
  const Node full = board({"m1", "m2"}, {"t1", "t2"}, 1);
  EXPECT_EQ(withoutLastRows(full, 2), board({"m1", "m2"}, {}, 3));
  EXPECT_EQ(withoutLastRows(full, 3), board({"m1"}, {}, 4));
  EXPECT_EQ(withoutLastRows(full, 4), board({}, {}, 5));
}

TEST(FewerRows, AreNotMoreThanThereAre) {
  EXPECT_EQ(withoutLastRows(board({"m1"}, {"t1"}, 0), 3), std::nullopt);
  EXPECT_EQ(withoutLastRows(Text("alone"), 1), std::nullopt);
}

TEST(Fitted, LeavesOutAsFewRowsAsItTakes) {
  const Node full = board({"m1"}, {"t1", "t2", "t3"}, 0);
  const auto childrenAtMost = [](std::size_t most) {
    return [most](const Node& node) { return std::get<VStackNode>(node.kind).children.size() <= most; };
  };
  EXPECT_EQ(fitted(full, Language::english, childrenAtMost(6)), localised(full, Language::english));
  // Head, meeting, divider, a task, and the line that counts two.
  EXPECT_EQ(fitted(full, Language::english, childrenAtMost(5)), localised(board({"m1"}, {"t1"}, 2), Language::english));
  const auto texts = fitted(full, Language::lithuanian, childrenAtMost(0));
  EXPECT_EQ(texts, localised(board({}, {}, 4), Language::lithuanian)) << "the head and the count stay whatever happens";
}

}  // namespace
}  // namespace host
