#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "protocol/view_tree/node_json.hpp"
#include "render/terminal/terminal_board.hpp"
#include "render/terminal/terminal_text.hpp"

namespace render {
namespace {

using namespace protocol;

/// Generates trees with much that could break frames.
class RandomTrees {
 public:
  explicit RandomTrees(unsigned seed) : random_(seed) {}

  int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random_); }

  Node node(int depth) {
    Node node;
    const int kind = below(depth > 0 ? 8 : 4);
    if (kind == 0) node.kind = SpacerNode{length()};
    if (kind == 1) node.kind = DividerNode{};
    if (kind == 2 || kind == 3) node.kind = text();
    if (kind == 4 || kind == 5) node.kind = VStackNode{HorizontalAlignment::leading, spacing(), children(depth)};
    if (kind >= 6) node.kind = HStackNode{static_cast<VerticalAlignment>(below(2)), spacing(), children(depth)};
    if (below(4) == 0) node.padding = EdgeInsets{length(), length(), length(), length()};
    if (below(6) == 0) node.background = CapsuleBackground{.fill = static_cast<ForegroundStyle>(below(5))};
    return node;
  }

 private:
  double length() {
    constexpr double lengths[] = {0, 1, 6, 12, 13, 30, -4, 1e9};
    return lengths[below(below(10) == 0 ? 8 : 5)];
  }

  std::optional<double> spacing() {
    if (below(2) == 0) return std::nullopt;
    return length();
  }

  std::vector<Node> children(int depth) {
    std::vector<Node> nodes(static_cast<std::size_t>(below(6)));
    for (auto& child : nodes) child = node(depth - 1);
    return nodes;
  }

  TextNode text() {
    static constexpr const char* pieces[] = {"a",
                                             "słowo ",
                                             "09:05",
                                             " ",
                                             "日本",
                                             "👩‍👩‍👧",
                                             "🇵",
                                             "🇱🇹",
                                             "\u0301",
                                             "\u200D",
                                             "\x1b[31m",
                                             "\n",
                                             "\t",
                                             "\r",
                                             "\u202E",
                                             "\u2028",
                                             "\xff",
                                             "\xe2\x80",
                                             "\x7f",
                                             "\u0085",
                                             "한",
                                             "\u1161",
                                             "\uFE0F",
                                             "☺",
                                             "का",
                                             "\u0600",
                                             "\u0D4E",
                                             "\u302E",
                                             "\u200B",
                                             "ﾞ",
                                             "👍🏽",
                                             "\u00A0",
                                             "1\uFE0F\u20E3",
                                             "bezkresneslowobezodstepow",
                                             "\U000E0067",
                                             "\u115F",
                                             "\U0001FAE8"};
    std::string text;
    for (int i = below(below(8) == 0 ? 40 : 5); i > 0; --i) text += pieces[below(std::size(pieces))];
    TextNode node{.content = Verbatim{text}};
    if (below(5) == 0) node.content = LocalizedKey{text + "%lld", {below(1000)}};
    node.font = static_cast<TextStyle>(below(3));
    node.style = static_cast<ForegroundStyle>(below(5));
    node.monospacedDigits = below(2) == 0;
    if (below(2) == 0) node.lineLimit = 1 + below(3);
    return node;
  }

  std::mt19937 random_;
};

/// The text without SGR sequences; other escape sequences are kept.
std::string withoutColours(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto end = text.find_first_not_of("0123456789;", i + 2);
    if (text[i] == '\x1b' && text.compare(i, 2, "\x1b[") == 0 && end != std::string::npos && text[end] == 'm') {
      i = end;
    } else {
      out += text[i];
    }
  }
  return out;
}

/// Whether a line contains only safe text, so that `shown` does not change it.
void expectLines(const std::string& board, int width, bool exactly) {
  std::istringstream in(board);
  for (std::string line; std::getline(in, line);) {
    ASSERT_EQ(terminal::shown(line).text, line);
    for (const char c : line) ASSERT_TRUE(static_cast<unsigned char>(c) >= 0x20 && c != 0x7f);
    if (exactly) {
      ASSERT_EQ(terminal::displayWidth(line), width) << line;
    } else {
      ASSERT_LE(terminal::displayWidth(line), width) << line;
    }
  }
}

TEST(TerminalBoard, KeepsItsWidthForAnyTree) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  RandomTrees trees(seed);
  for (int i = 0; i < 2000 && !testing::Test::HasFatalFailure(); ++i) {
    const Node tree = trees.node(4);
    const TerminalOptions options{.columns = 1 + trees.below(trees.below(2) == 0 ? 12 : 90), .escapes = i % 2 == 0};
    SCOPED_TRACE("columns " + std::to_string(options.columns) + (options.escapes ? ", escapes" : ""));
    expectLines(withoutColours(drawTerminalBoard(tree, options)), std::min(options.columns, options.widestBoard), true);
    expectLines(drawPlainBoard(tree, options.columns), options.columns, false);
  }
}

}  // namespace
}  // namespace render
