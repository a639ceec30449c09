#include "render/terminal/terminal_board.hpp"

#include <sstream>

#include <gtest/gtest.h>

#include "host/texts/texts.hpp"
#include "protocol/view_tree/builders.hpp"
#include "render/terminal/terminal_text.hpp"
#include "support/golden.hpp"
#include "support/sample_board.hpp"

namespace render {
namespace {

using host::Language;
using support::SampleBoard;
using support::SampleMeeting;
using support::SampleTask;

enum class Family { small, wide };

/// A text as the widget itself would localise it.
struct Words {
  std::string suffix;
  Language language;
  std::string meeting;
  std::string workshop;
  std::string review;
  std::string rollout;
  std::string grant;
  std::string tomorrow;
  std::string overdue;
  std::string noMeetings;
  std::string nothing;
  std::string offline;
};

const Words allWords[] = {
    {"pl", Language::polish, "Narada zespołu", "Pracownia", "Przejrzeć transkrypt narady", "Wdrożenie",
     "Wysłać wniosek grantowy", "jutro", "zaległe", "Brak umówionych spotkań", "Nic na dziś.",
     "Brak połączenia z Vambą."},
    {"en", Language::english, "Team meeting", "Workshop", "Review the meeting transcript", "Rollout",
     "Send the grant application", "tomorrow", "overdue", "No meetings arranged", "Nothing for today.",
     "No connection to Vamba."},
    {"lt", Language::lithuanian, "Komandos pasitarimas", "Dirbtuvė", "Peržiūrėti pasitarimo transkriptą", "Diegimas",
     "Išsiųsti paraišką dotacijai", "rytoj", "pradelsta", "Sutartų susitikimų nėra", "Šiandienai nieko.",
     "Nėra ryšio su Vamba."},
};

std::string unless(Family family, const std::string& text) { return family == Family::small ? "" : text; }

SampleBoard fullDay(const Words& words, Family family) {
  SampleBoard board{.decisions = 12, .hidden = 3};
  board.meetings = {{"09:05", words.meeting, unless(family, words.workshop), ""},
                    {"00:30", words.meeting, unless(family, words.rollout), words.tomorrow}};
  board.tasks = {{7, words.grant, unless(family, words.workshop), words.overdue},
                 {128, words.review, unless(family, words.rollout), ""},
                 {4021, words.review, unless(family, words.workshop), ""}};
  if (family == Family::small) {
    board.meetings.resize(1);
    board.tasks.resize(1);
  }
  return board;
}

SampleBoard withoutMeetings(const Words& words, Family family) {
  SampleBoard board = fullDay(words, family);
  board.meetings.clear();
  board.noMeetings = words.noMeetings;
  board.decisions = 1;
  return board;
}

SampleBoard withoutTasks(const Words& words, Family family) {
  SampleBoard board = fullDay(words, family);
  board.tasks.clear();
  board.decisions = 0;
  board.hidden = 0;
  return board;
}

SampleBoard empty(const Words& words, Family) { return {.decisions = 12345, .sentence = words.nothing}; }

SampleBoard sentence(const Words& words, Family) {
  return {.sentence = words.offline + " 500: Internal Server Error, <html>a very long page that nobody reads</html>"};
}

SampleBoard overlongTitles(const Words& words, Family family) {
  SampleBoard board = fullDay(words, family);
  board.decisions = 1234567890123;
  for (auto& meeting : board.meetings)
    meeting.title =
        "日本語の会議 👩‍👩‍👧‍👦 " + words.meeting + " — z wszystkimi, których to dotyczy";
  for (auto& task : board.tasks) task.title = words.review + "\n\x1b[31m" + words.grant + " \u202E" + words.review;
  board.tasks.front().number = 9223372036854775807;
  return board;
}

struct State {
  std::string name;
  SampleBoard (*board)(const Words&, Family);
};

const State states[] = {
    {"full", fullDay}, {"no_meetings", withoutMeetings}, {"no_tasks", withoutTasks},
    {"empty", empty},  {"sentence", sentence},           {"overlong", overlongTitles},
};

protocol::Node viewOf(const State& state, const Words& words, Family family) {
  return host::localised(support::viewOf(state.board(words, family)), words.language);
}

TEST(TerminalBoard, LooksAsReviewed) {
  for (const State& state : states) {
    for (const Words& words : allWords) {
      const auto wide = viewOf(state, words, Family::wide);
      const auto small = viewOf(state, words, Family::small);
      const std::string text =
          "medium and large, 80 columns\n" + drawTerminalBoard(wide, {.columns = 80}) +
          "medium and large, 40 columns\n" + drawTerminalBoard(wide, {.columns = 40}) + "small, 80 columns\n" +
          drawTerminalBoard(small, {.columns = 80, .widestBoard = smallBoard}) + "small, 20 columns\n" +
          drawTerminalBoard(small, {.columns = 20, .widestBoard = smallBoard}) + "plain, 80 columns\n" +
          drawPlainBoard(wide, 80);
      EXPECT_TRUE(support::matchesGolden("terminal/" + state.name + "_" + words.suffix + ".txt", text));
    }
  }
}

TEST(TerminalBoard, IsColouredAsReviewed) {
  const auto board = drawTerminalBoard(viewOf(states[0], allWords[0], Family::wide), {.columns = 40, .escapes = true});
  std::string visible;
  for (const char c : board) visible += c == '\x1b' ? "␛" : std::string(1, c);
  EXPECT_TRUE(support::matchesGolden("terminal/colours.txt", visible));
}

TEST(TerminalBoard, SaysTheSameWithAndWithoutEscapes) {
  // Except for the capsule, whose padding is drawn only with its colour.
  const auto view = viewOf(states[2], allWords[0], Family::wide);
  std::string stripped;
  bool escape = false;
  for (const char c : drawTerminalBoard(view, {.escapes = true})) {
    escape |= c == '\x1b';
    if (!escape) stripped += c;
    if (c == 'm') escape = false;
  }
  EXPECT_EQ(stripped, drawTerminalBoard(view, {}));
}

TEST(TerminalBoard, IsNoWiderThanLooksGoodNorThanTheTerminal) {
  const auto view = viewOf(states[0], allWords[0], Family::wide);
  const auto widthOf = [&](int columns, int widest) {
    const auto board = drawTerminalBoard(view, {.columns = columns, .widestBoard = widest});
    return terminal::displayWidth(board.substr(0, board.find('\n')));
  };
  EXPECT_EQ(widthOf(200, wideBoard), 60);
  EXPECT_EQ(widthOf(200, smallBoard), 34);
  EXPECT_EQ(widthOf(59, wideBoard), 59);
  EXPECT_EQ(widthOf(8, wideBoard), 8);
  EXPECT_EQ(widthOf(3, wideBoard), 3);
  EXPECT_EQ(widthOf(0, wideBoard), 1);
  EXPECT_EQ(widthOf(-5, wideBoard), 1);
}

using namespace protocol;

TEST(TerminalBoard, CutsATitleAndNotTheFigureBesideIt) {
  const auto row = HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                          {Text("09:05").monospacedDigit(), Text("Narada zespołu").lineLimit(1)});
  EXPECT_EQ(drawPlainBoard(VStack({}, {row}), 14), "09:05 Narada…\n");
}

TEST(TerminalBoard, KeepsFiguresOfOneColumnButForOneOutOfProportion) {
  const auto row = [](std::string figure) {
    return HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                  {Text(std::move(figure)).monospacedDigit(), Text("x")});
  };
  EXPECT_EQ(drawPlainBoard(VStack({}, {row("#7"), row("#12345678901"), row("09:05"), Text("x")}), 30),
            "#7    x\n"
            "#12345678901 x\n"
            "09:05 x\n"
            "x\n");
}

TEST(TerminalBoard, AlignsARowOnTheFirstLineOrOnTheMiddle) {
  const auto column = [] { return VStack({}, {Text("1"), Text("2"), Text("3")}); };
  EXPECT_EQ(drawPlainBoard(HStack({.alignment = VerticalAlignment::firstTextBaseline}, {Text("a"), column()}), 9),
            "a 1\n  2\n  3\n");
  EXPECT_EQ(drawPlainBoard(HStack({.alignment = VerticalAlignment::center}, {Text("a"), column()}), 9),
            "  1\na 2\n  3\n");
}

TEST(TerminalBoard, SharesRoomBetweenSpacers) {
  const auto row = HStack({}, {Spacer(), Text("a"), Spacer(), Text("b"), Spacer()});
  EXPECT_EQ(drawPlainBoard(VStack({}, {row, Text("123456789012")}), 20), "   a    b\n123456789012\n");
}

TEST(TerminalBoard, DrawsARuleAlongOrAcrossItsStack) {
  const auto beside = HStack({}, {Text("a"), Divider(), VStack({}, {Text("b"), Text("c")})});
  EXPECT_EQ(drawPlainBoard(VStack({}, {beside, Divider()}), 20), "a │ b\n  │ c\n─────\n");
}

TEST(TerminalBoard, LeavesNoLineNorGapForAnEmptyText) {
  EXPECT_EQ(drawPlainBoard(VStack({}, {Text("a"), Text(""), HStack({}, {Text(""), Text("b")})}), 20), "a\nb\n");
}

TEST(TerminalBoard, KeepsTextsApartThatWouldJoin) {
  const auto board = drawPlainBoard(HStack({.spacing = 0}, {Text("🇵"), Text("🇱"), Text("e"), Text("f")}), 20);
  EXPECT_EQ(board, "🇵\u200C🇱\u200Cef\n");
}

TEST(TerminalBoard, ShowsAKeyThatNobodyWordedAsWritten) {
  EXPECT_EQ(drawPlainBoard(Text(key("i %lld więcej", 4)), 20), "i 4 więcej\n");
}

TEST(TerminalBoard, DrawsAnEmptyTreeAsAnEmptyFrame) {
  EXPECT_EQ(drawTerminalBoard(VStack({}, {}), {.columns = 10}), "╭────────╮\n│        │\n╰────────╯\n");
  EXPECT_EQ(drawPlainBoard(VStack({}, {}), 10), "");
}

TEST(TerminalBoard, EndsATreeThatIsTooDeepWithAnEllipsis) {
  Node node = Text("deep");
  for (int i = 0; i < 5000; ++i) node = VStack({}, {View(std::move(node))});
  EXPECT_EQ(drawPlainBoard(node, 10), "…\n");
}

}  // namespace
}  // namespace render
