#include "host/status_line/status_line.hpp"

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/text/xml.hpp"
#include "protocol/view_tree/localized_key.hpp"
#include "render/terminal/terminal_board.hpp"
#include "render/terminal/terminal_text.hpp"

namespace host {
namespace {

using protocol::HStackNode;
using protocol::LocalizedKey;
using protocol::Node;
using protocol::TextNode;
using protocol::TextRole;
using protocol::Verbatim;
using protocol::VStackNode;

/// A tooltip is shown by itself and has room for whole titles, within reason.
constexpr int widestTooltip = 80;

/// The number stands after the noun, so that it needs no agreement.
std::string_view taskCount(Language language) {
  switch (language) {
    case Language::english:
      return "Tasks: %lld";
    case Language::lithuanian:
      return "Užduotys: %lld";
    case Language::polish:
      break;
  }
  return "Zadania: %lld";
}

struct Meeting {
  std::string time;
  std::string title;
  std::string day;  ///< empty: today
};

/// What the line needs to know of a board.
struct Findings {
  std::optional<Meeting> firstMeeting;
  std::int64_t taskRows = 0;
  std::int64_t hidden = 0;
  bool decision = false;
  bool overdue = false;
  std::string firstWords;  ///< the first text that is no key
};

bool isKey(const TextNode& text, std::string_view key) {
  const auto* localized = std::get_if<LocalizedKey>(&text.content);
  return localized != nullptr && localized->key == key;
}

template <typename Visit>
void eachText(const Node& node, const Visit& visit) {
  if (const auto* text = std::get_if<TextNode>(&node.kind)) {
    visit(*text);
  } else if (const auto* column = std::get_if<VStackNode>(&node.kind)) {
    for (const auto& child : column->children) eachText(child, visit);
  } else if (const auto* row = std::get_if<HStackNode>(&node.kind)) {
    for (const auto& child : row->children) eachText(child, visit);
  }
}

/// Reads the texts in their order: what follows a meeting's time belongs to it, up to the next row.
class BoardReader {
 public:
  void read(const TextNode& text) {
    if (findings_.firstWords.empty()) {
      if (const auto* verbatim = std::get_if<Verbatim>(&text.content)) findings_.firstWords = verbatim->text;
    }
    findings_.overdue |= text.role == TextRole::overdue;
    findings_.decision |= isKey(text, "%lld do decyzji");
    if (isKey(text, "i %lld więcej")) readHidden(std::get<LocalizedKey>(text.content));
    readRow(text);
  }

  const Findings& findings() const { return findings_; }

 private:
  void readHidden(const LocalizedKey& key) {
    if (!key.arguments.empty() && key.arguments.front() > 0) findings_.hidden = key.arguments.front();
  }

  void readRow(const TextNode& text) {
    if (text.role == TextRole::time) {
      inFirstMeeting_ = !findings_.firstMeeting;
      if (inFirstMeeting_) findings_.firstMeeting = Meeting{.time = protocol::asWritten(text), .title = {}, .day = {}};
    } else if (isKey(text, "#%lld")) {
      inFirstMeeting_ = false;
      ++findings_.taskRows;
    } else if (auto& meeting = findings_.firstMeeting; inFirstMeeting_ && meeting) {
      if (text.role == TextRole::title) meeting->title = protocol::asWritten(text);
      if (text.role == TextRole::day) meeting->day = protocol::asWritten(text);
    }
  }

  Findings findings_;
  bool inFirstMeeting_ = false;
};

Findings readBoard(const Node& view) {
  BoardReader reader;
  eachText(view, [&](const TextNode& text) { reader.read(text); });
  return reader.findings();
}

std::int64_t tasksOf(const Findings& findings) {
  // With a meeting shown the hidden ones are partly meetings; the count is asked for without one only.
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  return findings.hidden > most - findings.taskRows ? most : findings.taskRows + findings.hidden;
}

std::string textFor(const Findings& findings, BoardHolds holds, Language language) {
  if (holds == BoardHolds::sentence) return "⚠ " + findings.firstWords;
  if (const auto& meeting = findings.firstMeeting) {
    return meeting->time + " " + meeting->title + (meeting->day.empty() ? "" : " (" + meeting->day + ")");
  }
  const std::int64_t tasks = tasksOf(findings);
  if (tasks > 0) return protocol::withArguments(taskCount(language), std::vector{tasks});
  return findings.firstWords;
}

std::vector<std::string> classesFor(const Findings& findings, BoardHolds holds) {
  if (holds == BoardHolds::sentence) return {"error"};
  std::vector<std::string> classes;
  if (findings.overdue) classes.emplace_back("overdue");
  if (findings.decision) classes.emplace_back("decide");
  if (classes.empty()) classes.emplace_back("ok");
  return classes;
}

}  // namespace

StatusLine statusLine(const Node& view, BoardHolds holds, Language language) {
  const Findings findings = readBoard(view);
  std::string tooltip = render::drawPlainBoard(localised(view, language), widestTooltip);
  if (!tooltip.empty()) tooltip.pop_back();
  return {.text = render::terminal::shown(textFor(findings, holds, language)).text,
          .tooltip = std::move(tooltip),
          .classes = classesFor(findings, holds)};
}

std::string toWaybarJson(const StatusLine& line) {
  using json = nlohmann::ordered_json;
  const json object{{"text", base::escapedForXml(line.text)},
                    {"tooltip", base::escapedForXml(line.tooltip)},
                    {"class", line.classes}};
  return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace host
