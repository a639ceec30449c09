// The rows of a board as screen readers are given them.
#include <gmock/gmock.h>

#include "protocol/view_tree/builders.hpp"
#include "render/picture/drawing.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;
using ::testing::ElementsAre;

std::vector<ReadRow> rowsOf(const protocol::Node& tree, const BoardForm& form = mediumFamily) {
  auto drawing = prepare(tree, {.form = form});
  return drawing ? readRows(*drawing) : std::vector<ReadRow>();
}

std::vector<std::string> textsOf(const std::vector<ReadRow>& rows) {
  std::vector<std::string> texts;
  for (const auto& row : rows) texts.push_back(row.text);
  return texts;
}

protocol::Node day() {
  BoardContent content;
  content.awaiting = 3;
  content.meetings = {{"10:00", "Narada redakcyjna", "Strona wydawnictwa", "jutro"}, {"12:30", "Zebranie", {}, {}}};
  content.tasks = {{41, "Oddać rozliczenie", "Administracja", "zaległe"}};
  return board(content, Family::medium);
}

TEST(ReadRows, JoinTheTextsOfARow) {
  EXPECT_THAT(textsOf(rowsOf(day())),
              ElementsAre("Vamba, 3 do decyzji", "10:00, Narada redakcyjna, Strona wydawnictwa, jutro",
                          "12:30, Zebranie", "#41, Oddać rozliczenie, Administracja, zaległe"));
}

TEST(ReadRows, LieBelowEachOtherWithinTheBoard) {
  for (const auto& form : {mediumFamily, largeFamily}) {
    const auto rows = rowsOf(day(), form);
    ASSERT_EQ(rows.size(), 4U);
    double bottom = 0;
    for (const auto& row : rows) {
      EXPECT_GE(row.frame.y, bottom) << row.text;
      EXPECT_GT(row.frame.width, 0) << row.text;
      EXPECT_LE(row.frame.right(), form.size.width) << row.text;
      bottom = row.frame.bottom();
    }
    EXPECT_LE(bottom, form.size.height);
  }
}

TEST(ReadRows, HaveTheWholeTextOfALineThatIsCut) {
  const std::string title =
      "Bardzo długi tytuł zadania, który nie zmieści się w jednym wierszu tej tablicy nawet wtedy";
  EXPECT_THAT(textsOf(rowsOf(protocol::Text(title).lineLimit(1))), ElementsAre(title));
}

TEST(ReadRows, LeaveOutEmptyTexts) {
  EXPECT_THAT(textsOf(rowsOf(protocol::VStack({}, {protocol::Text(""), protocol::Text("jeden\ndwa")}))),
              ElementsAre("jeden dwa"));
}

}  // namespace
}  // namespace render
