// The day in one line, for status bars and prompts, with the whole board as its tooltip. Nothing is fetched or
// scheduled here.
//
//   std::cout << toWaybarJson(statusLine(view, BoardHolds::day, language)) << '\n';
#pragma once

#include <string>
#include <vector>

#include "host/extension/entry.hpp"
#include "host/texts/texts.hpp"
#include "protocol/view_tree/node.hpp"

namespace host {

/// One state of the line, as plain text that is safe to show.
struct StatusLine {
  std::string text;                  ///< one line
  std::string tooltip;               ///< the board, its lines parted by '\n'
  std::vector<std::string> classes;  ///< for a bar's style sheet, see `statusLine`; never empty
  bool operator==(const StatusLine&) const = default;
};

/// Reads the line off the view as the extension answered it, before `localised`, by the keys and roles of its texts.
///
/// The text is the first meeting's time and title (with its day in parentheses, so that tomorrow's meeting is not taken
/// for today's); without a meeting the number of tasks, the hidden ones included; without either the board's first own
/// words ("Nothing for today."), which is also what a board without roles shows. A sentence follows a warning
/// sign.
///
/// The classes are "error" for a sentence, else "overdue" where a task is overdue and "decide" where a decision waits,
/// else "ok".
StatusLine statusLine(const protocol::Node& view, BoardHolds holds, Language language);

/// One JSON object {"text", "tooltip", "class"} on one line, without the line end, as waybar's custom modules read it:
/// the texts are Pango markup, `class` is an array.
std::string toWaybarJson(const StatusLine& line);

}  // namespace host
