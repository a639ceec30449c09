#include "base/json/json_text.hpp"
#include "host/commands/draw.hpp"
#include "host/commands/terminal.hpp"
#include "host/status_line/status_line.hpp"
#include "host/texts/texts.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace host {

DrawnBoard drawText(const Board& board, const CommandLine& line) {
  switch (line.format) {
    case Format::json:
      return base::toPrintableText(toJson(board.view)) + "\n";
    case Format::waybar:
      return toWaybarJson(statusLine(board.view, board.holds, userLanguage())) + "\n";
    case Format::line:
      return statusLine(board.view, board.holds, userLanguage()).text + "\n";
    default:
      return render::drawTerminalBoard(localised(board.view),
                                       line.output ? fileOptions(line.family) : terminalOptions(line.family));
  }
}

}  // namespace host
