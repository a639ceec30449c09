#include "base/json/json_text.hpp"
#include "host/commands/draw.hpp"
#include "host/commands/terminal.hpp"
#include "host/texts/texts.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace host {

Drawing drawText(const Board& board, const CommandLine& line) {
  if (line.format == Format::json) return base::toText(toJson(board.view)) + "\n";
  return render::drawTerminalBoard(localised(board.view),
                                   line.output ? fileOptions(line.family) : terminalOptions(line.family));
}

}  // namespace host
