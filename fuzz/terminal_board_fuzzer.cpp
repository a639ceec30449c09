// Any view tree that an extension may send becomes lines of equal width without control characters besides the escape
// sequences for colours. The first byte is the terminal's width, the second chooses one of the boards; the rest is a
// tree as JSON, or else the bytes of a title.
#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "any_tree.hpp"
#include "protocol/view_tree/builders.hpp"
#include "render/terminal/terminal_board.hpp"
#include "render/terminal/terminal_text.hpp"
#include "require.hpp"

namespace {

using namespace protocol;
using fuzz::require;

Node titleRow(std::string title) {
  return VStack({},
                {
                    HStack({.alignment = VerticalAlignment::firstTextBaseline},
                           {Text("09:05").monospacedDigit(), Text(title).lineLimit(1), Spacer(), Text(title)}),
                    Text(title),
                })
      .padding(12);
}

Node treeOf(std::string_view bytes) {
  if (auto tree = fuzz::treeFromJson(bytes)) return *std::move(tree);
  // A longer title reaches no other code and takes longer.
  constexpr std::size_t longestTitle = 300;
  return titleRow(std::string(bytes.substr(0, longestTitle)));
}

/// The text without its SGR sequences. Any other escape stays, and is then found as a control character.
std::string withoutEscapes(const std::string& text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text.compare(at, 2, "\x1b[") == 0) {
      const auto end = text.find_first_not_of("0123456789;", at + 2);
      if (end != std::string::npos && text[end] == 'm') {
        at = end;
        continue;
      }
    }
    plain += text[at];
  }
  return plain;
}

void checkBoard(const std::string& board, int width) {
  std::istringstream lines(board);
  for (std::string line; std::getline(lines, line);) {
    require(render::terminal::shown(line).text == line);
    require(render::terminal::displayWidth(line) == width);
  }
}

void checkPlainBoard(const std::string& board, int columns) {
  std::istringstream lines(board);
  for (std::string line; std::getline(lines, line);) {
    require(render::terminal::shown(line).text == line);
    require(render::terminal::displayWidth(line) <= columns);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int columns = 1 + data[0] % 100;
  const Node tree = treeOf({reinterpret_cast<const char*>(data) + 2, size - 2});
  if (data[1] % 3 == 1) {
    checkPlainBoard(render::drawPlainBoard(tree, columns), columns);
    return 0;
  }
  const render::TerminalOptions options{.columns = columns, .escapes = data[1] % 3 == 2};
  const std::string board = render::drawTerminalBoard(tree, options);
  checkBoard(options.escapes ? withoutEscapes(board) : board, std::min(columns, options.widestBoard));
  return 0;
}
