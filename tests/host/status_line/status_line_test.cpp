#include "host/status_line/status_line.hpp"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "protocol/view_tree/builders.hpp"
#include "support/sample_board.hpp"

namespace host {
namespace {

using support::SampleBoard;
using support::viewOf;
using testing::HasSubstr;
using testing::Not;

StatusLine dayOf(const SampleBoard& board, Language language = Language::polish) {
  return statusLine(viewOf(board), BoardHolds::day, language);
}

const SampleBoard fullDay{
    .decisions = 3,
    .meetings = {{"09:05", "Narada", "Pracownia", ""}, {"11:00", "Przegląd", "Wdrożenie", ""}},
    .tasks = {{7, "Zgłosić", "Pracownia", ""}},
    .hidden = 2,
};

TEST(StatusLine, ShowsTheNextMeetingFirst) { EXPECT_EQ(dayOf(fullDay).text, "09:05 Narada"); }

TEST(StatusLine, TellsThatTheNextMeetingIsTomorrow) {
  EXPECT_EQ(dayOf({.meetings = {{"00:30", "Narada", "Pracownia", "jutro"}}}).text, "00:30 Narada (jutro)");
}

TEST(StatusLine, CountsTasksWithTheHiddenOnesWhenThereIsNoMeeting) {
  const SampleBoard board{.tasks = {{1, "a", "", ""}, {2, "b", "", ""}}, .hidden = 3};
  EXPECT_EQ(dayOf(board, Language::polish).text, "Zadania: 5");
  EXPECT_EQ(dayOf(board, Language::english).text, "Tasks: 5");
  EXPECT_EQ(dayOf(board, Language::lithuanian).text, "Užduotys: 5");
}

TEST(StatusLine, ShowsTheBoardsOwnWordsWhereThereIsNothingToDo) {
  EXPECT_EQ(dayOf({.sentence = "Nic na dziś."}).text, "Nic na dziś.");
}

TEST(StatusLine, ShowsTheFirstWordsOfABoardWithoutRoles) {
  using namespace protocol;
  const Node view = VStack({}, {Text(key("Weather")), Text(std::string("Rain")).foregroundStyle(ForegroundStyle::red)});
  const StatusLine expected{.text = "Rain", .tooltip = "Weather\nRain", .classes = {"ok"}};
  EXPECT_EQ(statusLine(view, BoardHolds::day, Language::polish), expected);
}

TEST(StatusLine, GoesByRolesAndNotByLooks) {
  using namespace protocol;
  const Node view = VStack(
      {},
      {HStack({},
              {Text(std::string("Room 9")).role(TextRole::project), Text(std::string("Talk")).role(TextRole::title)}),
       HStack({}, {Text(std::string("10:00")).role(TextRole::time), Text(std::string("Review")).role(TextRole::title),
                   Text(std::string("tomorrow")).role(TextRole::day)}),
       HStack({}, {Text(key("#%lld", 4)), Text(std::string("Report")).role(TextRole::title),
                   Text(std::string("late")).role(TextRole::overdue)})});
  const auto line = statusLine(view, BoardHolds::day, Language::english);
  EXPECT_EQ(line.text, "10:00 Review (tomorrow)");
  EXPECT_EQ(line.classes, std::vector<std::string>{"overdue"});
}

TEST(StatusLine, ShowsASentenceBehindAWarningSign) {
  const auto line = statusLine(viewOf({.decisions = 2, .sentence = "Brak połączenia z Vambą."}), BoardHolds::sentence,
                               Language::polish);
  EXPECT_EQ(line.text, "⚠ Brak połączenia z Vambą.");
  EXPECT_EQ(line.classes, std::vector<std::string>{"error"});
}

TEST(StatusLine, HasAClassForEachThingThatPresses) {
  using Classes = std::vector<std::string>;
  SampleBoard board = fullDay;
  EXPECT_EQ(dayOf(board).classes, Classes{"decide"});
  board.tasks.front().mark = "zaległe";
  EXPECT_EQ(dayOf(board).classes, (Classes{"overdue", "decide"}));
  board.decisions = 0;
  EXPECT_EQ(dayOf(board).classes, Classes{"overdue"});
  board.tasks.front().mark.clear();
  EXPECT_EQ(dayOf(board).classes, Classes{"ok"});
  EXPECT_EQ(statusLine(viewOf(board), BoardHolds::sentence, Language::polish).classes, Classes{"error"});
}

TEST(StatusLine, HasTheWholeBoardAsItsTooltip) {
  EXPECT_EQ(dayOf(fullDay, Language::english).tooltip,
            "Vamba 3 to decide\n"
            "\n"
            "09:05 Narada\n"
            "      Pracownia\n"
            "11:00 Przegląd\n"
            "      Wdrożenie\n"
            "─────────────────\n"
            "#7    Zgłosić\n"
            "      Pracownia\n"
            "and 2 more");
}

TEST(StatusLine, KeepsToOneLineAndEscapesMarkupForWaybar) {
  const auto line = dayOf({.meetings = {{"09:05", "<b>\"R&D\"</b>\n'x'\x1b[1m", "", ""}}});
  EXPECT_EQ(line.text, "09:05 <b>\"R&D\"</b> 'x'\uFFFD[1m");
  const auto object = nlohmann::json::parse(toWaybarJson(line));
  const std::string escaped = "09:05 &lt;b&gt;&quot;R&amp;D&quot;&lt;/b&gt; &#39;x&#39;\uFFFD[1m";
  EXPECT_EQ(object["text"], escaped);
  EXPECT_THAT(object["tooltip"].get<std::string>(), HasSubstr(escaped));
}

TEST(StatusLine, SurvivesCountsBeyondReason) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(dayOf({.tasks = {{1, "a", "", ""}}, .hidden = most}).text, "Zadania: 9223372036854775807");
  const protocol::Node view = protocol::Text(protocol::key("i %lld więcej", -5));
  EXPECT_EQ(statusLine(view, BoardHolds::day, Language::polish).text, "");
}

TEST(WaybarJson, IsOneLineThatReadsBackWhateverATitleHolds) {
  const auto line = dayOf({.meetings = {{"09:05", "a\tb\xff\x7f\u2028\u202E\"\\", "", ""}}});
  const std::string json = toWaybarJson(line);
  for (const char c : json) EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20 && c != 0x7f);
  const auto object = nlohmann::json::parse(json);
  EXPECT_EQ(object.size(), 3u);
  EXPECT_EQ(object["text"], "09:05 a b\uFFFD\uFFFD \uFFFD&quot;\\");
  EXPECT_EQ(object["tooltip"], "Vamba\n\n09:05 a b\uFFFD\uFFFD \uFFFD&quot;\\");
  EXPECT_EQ(object["class"], nlohmann::json::array({"ok"}));
}

TEST(WaybarJson, StaysValidForTextsThatAreNot) {
  const auto object = nlohmann::json::parse(toWaybarJson({.text = "\xff", .tooltip = "", .classes = {"ok"}}));
  EXPECT_EQ(object["text"], "\uFFFD");
}

}  // namespace
}  // namespace host
