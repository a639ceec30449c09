// Any view tree that an extension may send becomes lines of equal width without control characters. The first byte is
// the terminal's width, the second chooses one of the boards; the rest is a tree as JSON, or else the bytes of a title.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "any_tree.hpp"
#include "protocol/view_tree/builders.hpp"
#include "render/terminal/terminal_board.hpp"
#include "render/terminal/terminal_text.hpp"

namespace {

using namespace protocol;

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

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int columns = 1 + data[0] % 100;
  const Node tree = treeOf({reinterpret_cast<const char*>(data) + 2, size - 2});
  const render::TerminalOptions options{.columns = columns};
  switch (data[1] % 3) {
    case 0: {
      std::istringstream board(render::drawTerminalBoard(tree, options));
      for (std::string line; std::getline(board, line);) {
        require(render::terminal::shown(line).text == line);
        require(render::terminal::displayWidth(line) == std::min(columns, options.widestBoard));
      }
      break;
    }
    case 1: {
      std::istringstream plain(render::drawPlainBoard(tree, columns));
      for (std::string line; std::getline(plain, line);) {
        require(render::terminal::shown(line).text == line);
        require(render::terminal::displayWidth(line) <= columns);
      }
      break;
    }
    default:
      (void)render::drawTerminalBoard(tree, {.columns = columns, .escapes = true});
  }
  return 0;
}
