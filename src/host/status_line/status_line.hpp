// The day in one line of a status bar, with the whole board as its tooltip, in the JSON form that waybar's custom
// modules read. Nothing is fetched or scheduled here.
//
//   std::cout << toWaybarJson(statusLine(view, BoardHolds::day)) << '\n';
#pragma once

#include <string>

#include "host/texts/texts.hpp"
#include "protocol/view_tree/node.hpp"

namespace host {

/// What stands on the board: the day, or a sentence instead of it (the entry has a `blad`).
enum class BoardHolds { day, sentence };

/// One state of the line. `text` and `tooltip` are Pango markup: what they hold is escaped already.
struct StatusLine {
  std::string text;      ///< one line
  std::string tooltip;   ///< the board as plain text, lines parted by '\n'
  std::string cssClass;  ///< "ok", "decide", "overdue" or "error"
  bool operator==(const StatusLine&) const = default;
};

/// Reads the line off the view as the extension answered it, before `localised`: the keys tell what is what.
///
/// The text is the first meeting's time and title (with the row's mark in parentheses, so that tomorrow's meeting is
/// not taken for today's); without a meeting the number of tasks, the hidden ones included; without either, that there
/// is nothing to do. A sentence stands by itself after a warning sign.
///
/// The class is the most pressing thing: "error" for a sentence, else "overdue" where something on the board is marked
/// red, else "decide" where a decision waits, else "ok". A deadline that has passed comes before a decision, which can
/// wait.
StatusLine statusLine(const protocol::Node& view, BoardHolds holds, Language language);
StatusLine statusLine(const protocol::Node& view, BoardHolds holds);

/// One JSON object {"text", "tooltip", "class"} on one line, without the line end.
std::string toWaybarJson(const StatusLine& line);

}  // namespace host
