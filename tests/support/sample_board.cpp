#include "support/sample_board.hpp"

#include "protocol/view_tree/builders.hpp"

namespace support {
namespace {

using namespace protocol;

View header(std::int64_t decisions) {
  return HStack({.alignment = VerticalAlignment::center, .spacing = 6},
                {
                    Text(key("Vamba")).font(TextStyle::headline),
                    Spacer(),
                    when(decisions >= 1,
                         [&] {
                           return Text(key("%lld do decyzji", decisions))
                               .font(TextStyle::caption2)
                               .weight(FontWeight::medium)
                               .padding({.top = 2, .leading = 6, .bottom = 2, .trailing = 6})
                               .background({.fill = ForegroundStyle::tint, .opacity = 0.15});
                         }),
                });
}

View row(View figure, const std::string& title, const std::string& project, Views mark) {
  return HStack({.alignment = VerticalAlignment::firstTextBaseline, .spacing = 6},
                {
                    std::move(figure),
                    VStack({},
                           {
                               Text(title).lineLimit(1).role(TextRole::title),
                               when(!project.empty(),
                                    [&] {
                                      return Text(project)
                                          .font(TextStyle::caption2)
                                          .foregroundStyle(ForegroundStyle::tertiary)
                                          .lineLimit(1)
                                          .role(TextRole::project);
                                    }),
                               std::move(mark),
                           }),
                });
}

View meeting(const SampleMeeting& meeting) {
  return row(Text(meeting.time)
                 .font(TextStyle::caption2)
                 .monospacedDigit()
                 .weight(FontWeight::semibold)
                 .foregroundStyle(ForegroundStyle::tint)
                 .role(TextRole::time),
             meeting.title, meeting.project, when(!meeting.mark.empty(), [&] {
               return Text(meeting.mark)
                   .font(TextStyle::caption2)
                   .foregroundStyle(ForegroundStyle::secondary)
                   .role(TextRole::day);
             }));
}

View task(const SampleTask& task) {
  return row(Text(key("#%lld", task.number))
                 .font(TextStyle::caption2)
                 .monospacedDigit()
                 .foregroundStyle(ForegroundStyle::secondary),
             task.title, task.project, when(!task.mark.empty(), [&] {
               return Text(task.mark)
                   .font(TextStyle::caption2)
                   .weight(FontWeight::semibold)
                   .foregroundStyle(ForegroundStyle::red)
                   .role(TextRole::overdue);
             }));
}

View faint(Text text) { return std::move(text).font(TextStyle::caption2).foregroundStyle(ForegroundStyle::tertiary); }

Views rows(const SampleBoard& board) {
  std::vector<Node> nodes;
  if (!board.sentence.empty()) {
    nodes.push_back(Text(board.sentence).foregroundStyle(ForegroundStyle::secondary));
    return Views(std::move(nodes));
  }
  for (const auto& each : board.meetings) nodes.push_back(meeting(each));
  if (board.meetings.empty()) nodes.push_back(faint(Text(board.noMeetings)));
  if (!board.tasks.empty()) nodes.push_back(Divider().padding({.top = 1, .bottom = 1}));
  for (const auto& each : board.tasks) nodes.push_back(task(each));
  if (board.hidden >= 1) nodes.push_back(faint(Text(key("i %lld więcej", board.hidden))));
  return Views(std::move(nodes));
}

}  // namespace

Node viewOf(const SampleBoard& board) {
  return VStack({.alignment = HorizontalAlignment::leading, .spacing = 6}, {header(board.decisions), rows(board)})
      .padding(12)
      .containerBackground(ContainerBackground::background);
}

}  // namespace support
