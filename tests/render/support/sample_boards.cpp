#include "render/support/sample_boards.hpp"

#include <algorithm>
#include <span>

#include "protocol/view_tree/builders.hpp"

namespace render::testing {
namespace {

using namespace protocol;

View quiet(const std::string& text, ForegroundStyle style = ForegroundStyle::tertiary) {
  return Text(text).font(TextStyle::caption2).foregroundStyle(style);
}

View oneLine(Text&& text) { return std::move(text).lineLimit(1); }

View header(const BoardContent& content) {
  return HStack({.alignment = VerticalAlignment::center, .spacing = 6},
                {Text("Vamba").font(TextStyle::headline), Spacer(0), when(content.awaiting >= 1, [&] {
                   return Text(std::to_string(content.awaiting) + content.badge)
                       .font(TextStyle::caption2)
                       .weight(FontWeight::medium)
                       .padding(EdgeInsets{2, 6, 2, 6})
                       .background(CapsuleBackground{.opacity = 0.15});
                 })});
}

View meetingRow(const MeetingRow& row, bool small) {
  return HStack(
      {.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
      {Text(row.time)
           .font(TextStyle::caption2)
           .monospacedDigit()
           .weight(FontWeight::semibold)
           .foregroundStyle(ForegroundStyle::tint),
       VStack({}, {oneLine(Text(row.title).font(TextStyle::caption)),
                   when(!small && row.project.has_value(),
                        [&] {
                          return oneLine(
                              Text(*row.project).font(TextStyle::caption2).foregroundStyle(ForegroundStyle::tertiary));
                        }),
                   when(row.mark.has_value(), [&] { return quiet(*row.mark, ForegroundStyle::secondary); })})});
}

View taskRow(const TaskRow& row, bool small) {
  return HStack(
      {.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
      {Text("#" + std::to_string(row.number))
           .font(TextStyle::caption2)
           .monospacedDigit()
           .foregroundStyle(ForegroundStyle::secondary),
       VStack({}, {oneLine(Text(row.title).font(TextStyle::caption)),
                   when(!small,
                        [&] {
                          return oneLine(
                              Text(row.project).font(TextStyle::caption2).foregroundStyle(ForegroundStyle::tertiary));
                        }),
                   when(row.mark.has_value(), [&]() -> View {
                     return Text(*row.mark)
                         .font(TextStyle::caption2)
                         .weight(FontWeight::semibold)
                         .foregroundStyle(ForegroundStyle::red);
                   })})});
}

template <typename Row, typename Make>
Views rows(const std::vector<Row>& all, std::size_t limit, Make make) {
  std::vector<Node> nodes;
  for (const auto& row : std::span(all).first(std::min(limit, all.size()))) nodes.push_back(make(row));
  return Views(std::move(nodes));
}

Views sections(const BoardContent& content, bool small) {
  if (content.sentence) {
    return View(Text(*content.sentence).font(TextStyle::caption).foregroundStyle(ForegroundStyle::secondary));
  }
  const std::size_t meetingLimit = small ? 1 : 2;
  const std::size_t taskLimit = small ? 1 : (content.meetings.empty() ? 4 : 3);
  const auto beyond = [](std::size_t count, std::size_t limit) { return count > limit ? count - limit : 0; };
  const auto hidden = beyond(content.meetings.size(), meetingLimit) + beyond(content.tasks.size(), taskLimit);

  auto all = content.meetings.empty()
                 ? Views(quiet(content.noMeetings))
                 : rows(content.meetings, meetingLimit, [&](const auto& row) { return meetingRow(row, small); });
  const auto append = [&](Views more) {
    for (auto& node : more.nodes) all.nodes.push_back(std::move(node));
  };
  if (!content.tasks.empty()) {
    append(Divider().padding(EdgeInsets{1, 0, 1, 0}));
    append(rows(content.tasks, taskLimit, [&](const auto& row) { return taskRow(row, small); }));
  }
  append(when(hidden >= 1, [&] { return quiet("i " + std::to_string(hidden) + " więcej"); }));
  return all;
}

struct Words {
  std::string badge, sentence, nothing, noMeetings, tomorrow, overdue;
  std::vector<std::string> titles, projects;
};

Words wordsOf(Language language) {
  switch (language) {
    case Language::polish:
      return {" do decyzji",
              "Poświadczenie wygasło — zaloguj się ponownie.",
              "Nic na dziś.",
              "Brak umówionych spotkań",
              "jutro",
              "zaległe",
              {"Narada zespołu", "Żółta gęś: przegląd źródeł", "Wysłać wniosek grantowy", "Przejrzeć transkrypt narady",
               "Uzupełnić kosztorys", "Zamówić ławki"},
              {"Pracownia", "Wdrożenie"}};
    case Language::english:
      return {" to decide",
              "The credential has expired — sign in again.",
              "Nothing for today.",
              "No meetings planned",
              "tomorrow",
              "overdue",
              {"Team meeting", "Review of sources", "Send the grant application", "Go through the transcript",
               "Complete the estimate", "Order the benches"},
              {"Workshop", "Rollout"}};
    case Language::lithuanian:
      return {" laukia sprendimo",
              "Prisijungimo duomenys nebegalioja — prisijunkite iš naujo.",
              "Šiandien nieko nėra.",
              "Suplanuotų susitikimų nėra",
              "rytoj",
              "vėluoja",
              {"Komandos pasitarimas", "Šaltinių apžvalga", "Išsiųsti dotacijos paraišką", "Peržiūrėti nuorašą",
               "Užpildyti sąmatą", "Užsakyti suolus"},
              {"Dirbtuvė", "Diegimas"}};
  }
  return {};
}

}  // namespace

Node board(const BoardContent& content, Family family) {
  const bool small = family == Family::small;
  return VStack({.alignment = HorizontalAlignment::leading, .spacing = 6}, {header(content), sections(content, small)})
      .padding(12)
      .containerBackground(ContainerBackground::background);
}

BoardContent sampleContent(State state, Language language, std::int64_t awaiting) {
  const auto words = wordsOf(language);
  BoardContent content{.awaiting = awaiting, .badge = words.badge, .noMeetings = words.noMeetings};
  if (state == State::error) content.sentence = words.sentence;
  if (state == State::empty) content.sentence = words.nothing;
  if (content.sentence) return content;

  std::string more;
  if (state == State::overlongTitles) {
    for (int i = 0; i < 12; ++i) more += " " + words.titles[2];
  }
  if (state != State::noMeetings) {
    content.meetings = {{"09:05", words.titles[0] + more, words.projects[0] + more, words.tomorrow},
                        {"23:40", words.titles[1] + more, words.projects[1] + more, words.tomorrow},
                        {"23:55", words.titles[1] + more, words.projects[1] + more, words.tomorrow}};
  }
  if (state != State::noTasks) {
    for (std::size_t i = 0; i < 5; ++i) {
      content.tasks.push_back({i == 0 ? 7 : static_cast<std::int64_t>(108 + 91 * i),
                               words.titles[2 + i % (words.titles.size() - 2)] + more, words.projects[i % 2] + more,
                               words.overdue});
    }
  }
  return content;
}

}  // namespace render::testing
