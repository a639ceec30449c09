#include "host/status_line/status_line.hpp"

#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "protocol/view_tree/localized_key.hpp"
#include "render/terminal/terminal_board.hpp"
#include "render/terminal/terminal_text.hpp"

namespace host {
namespace {

using protocol::ForegroundStyle;
using protocol::HStackNode;
using protocol::LocalizedKey;
using protocol::TextNode;
using protocol::Verbatim;

/// A tooltip is shown by itself and has room for whole titles, within reason.
constexpr int widestTooltip = 80;

struct Wordings {
  std::string_view tasks;
  std::string_view nothing;
};

/// The number stands after the noun, so that it needs no agreement.
Wordings wordings(Language language) {
  switch (language) {
    case Language::english:
      return {"Tasks: %lld", "Nothing for today"};
    case Language::lithuanian:
      return {"Užduotys: %lld", "Šiandienai nieko"};
    case Language::polish:
      break;
  }
  return {"Zadania: %lld", "Nic na dziś"};
}

struct Meeting {
  std::string time;
  std::string title;
  std::string mark;
};

/// What the line needs to know of a board.
struct Findings {
  std::optional<Meeting> firstMeeting;
  std::int64_t taskRows = 0;
  std::int64_t hidden = 0;
  bool decision = false;
  bool overdue = false;
  std::string sentence;  ///< the first text that is no key
};

bool isKey(const TextNode& text, std::string_view key) {
  const auto* localized = std::get_if<LocalizedKey>(&text.content);
  return localized != nullptr && localized->key == key;
}

std::string wordsOf(const TextNode& text) {
  if (const auto* verbatim = std::get_if<Verbatim>(&text.content)) return verbatim->text;
  return protocol::asWritten(std::get<LocalizedKey>(text.content));
}

template <typename Visit>
void eachNode(const protocol::Node& node, const Visit& visit) {
  visit(node);
  if (const auto* column = std::get_if<protocol::VStackNode>(&node.kind)) {
    for (const auto& child : column->children) eachNode(child, visit);
  } else if (const auto* row = std::get_if<HStackNode>(&node.kind)) {
    for (const auto& child : row->children) eachNode(child, visit);
  }
}

/// The meeting of a row: a tinted time, the title as the next text, a secondary mark ("tomorrow") below it.
std::optional<Meeting> meetingOf(const HStackNode& row) {
  if (row.children.size() < 2) return std::nullopt;
  const auto* time = std::get_if<TextNode>(&row.children.front().kind);
  if (time == nullptr || time->style != ForegroundStyle::tint) return std::nullopt;
  Meeting meeting{wordsOf(*time), {}, {}};
  bool hasTitle = false;
  for (std::size_t i = 1; i < row.children.size(); ++i) {
    eachNode(row.children[i], [&](const protocol::Node& node) {
      const auto* text = std::get_if<TextNode>(&node.kind);
      if (text == nullptr) return;
      if (!hasTitle) {
        meeting.title = wordsOf(*text);
        hasTitle = true;
      } else if (text->style == ForegroundStyle::secondary && meeting.mark.empty()) {
        meeting.mark = wordsOf(*text);
      }
    });
  }
  return meeting;
}

Findings readBoard(const protocol::Node& view) {
  Findings findings;
  eachNode(view, [&](const protocol::Node& node) {
    if (const auto* row = std::get_if<HStackNode>(&node.kind); row != nullptr && !findings.firstMeeting) {
      findings.firstMeeting = meetingOf(*row);
    }
    const auto* text = std::get_if<TextNode>(&node.kind);
    if (text == nullptr) return;
    findings.overdue |= text->style == ForegroundStyle::red;
    findings.decision |= isKey(*text, "%lld do decyzji");
    if (isKey(*text, "#%lld")) ++findings.taskRows;
    if (isKey(*text, "i %lld więcej")) {
      const auto& arguments = std::get<LocalizedKey>(text->content).arguments;
      if (!arguments.empty() && arguments.front() > 0) findings.hidden = arguments.front();
    }
    if (findings.sentence.empty()) {
      if (const auto* verbatim = std::get_if<Verbatim>(&text->content)) findings.sentence = verbatim->text;
    }
  });
  return findings;
}

std::int64_t tasksOf(const Findings& findings) {
  // With a meeting shown the hidden ones are partly meetings; the count is asked for without one only.
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  return findings.hidden > most - findings.taskRows ? most : findings.taskRows + findings.hidden;
}

std::string textFor(const Findings& findings, BoardHolds holds, Language language) {
  if (holds == BoardHolds::sentence) return "⚠ " + findings.sentence;
  if (const auto& meeting = findings.firstMeeting) {
    std::string text = meeting->time + " " + meeting->title;
    if (!meeting->mark.empty()) text += " (" + meeting->mark + ")";
    return text;
  }
  const std::int64_t tasks = tasksOf(findings);
  if (tasks == 0) return std::string(wordings(language).nothing);
  return protocol::withArguments(wordings(language).tasks, std::vector{tasks});
}

std::string classFor(const Findings& findings, BoardHolds holds) {
  if (holds == BoardHolds::sentence) return "error";
  if (findings.overdue) return "overdue";
  return findings.decision ? "decide" : "ok";
}

/// Pango markup (and XML) reads these five; escaped, any text stands for itself.
std::string escaped(std::string_view text) {
  std::string markup;
  markup.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      case '"':
        markup += "&quot;";
        break;
      case '\'':
        markup += "&#39;";
        break;
      default:
        markup += c;
    }
  }
  return markup;
}

}  // namespace

StatusLine statusLine(const protocol::Node& view, BoardHolds holds, Language language) {
  const Findings findings = readBoard(view);
  std::string tooltip = render::drawPlainBoard(localised(view, language), widestTooltip);
  if (!tooltip.empty()) tooltip.pop_back();
  return {.text = escaped(render::terminal::shown(textFor(findings, holds, language)).text),
          .tooltip = escaped(tooltip),
          .cssClass = classFor(findings, holds)};
}

StatusLine statusLine(const protocol::Node& view, BoardHolds holds) { return statusLine(view, holds, userLanguage()); }

}  // namespace host
