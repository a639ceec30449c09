#include "render/terminal/terminal_board.hpp"

#include <algorithm>
#include <utility>

#include "render/terminal/terminal_canvas.hpp"
#include "render/terminal/terminal_layout.hpp"

namespace render {
namespace {

using namespace terminal;

using protocol::FontWeight;
using protocol::ForegroundStyle;
using protocol::TextStyle;
using Fill = std::optional<ForegroundStyle>;

constexpr int narrowestFrame = 8;

std::string repeated(std::string_view text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

/// A headline is bold unless a weight is given.
bool isBold(const protocol::TextNode& text) {
  return text.weight ? *text.weight == FontWeight::semibold : text.font == TextStyle::headline;
}

/// The paint pass: paints a box and its children with its corner at the given cell.
void paint(Canvas& canvas, const Box& box, int x, int y, Fill fill) {
  const protocol::Node& node = *box.node;
  if (box.height == 0) return;
  if (node.background) {
    fill = node.background->fill;
    canvas.fill(x, y, box.width, box.height, *fill);
  }
  const int innerX = x + box.padding.leading;
  const int innerY = y + box.padding.top;
  if (std::holds_alternative<protocol::DividerNode>(node.kind)) {
    const Ink ink{.style = ForegroundStyle::tertiary, .fill = fill};
    const int width = box.width - box.padding.leading - box.padding.trailing;
    const int height = box.height - box.padding.top - box.padding.bottom;
    if (height == 1) canvas.put(innerX, innerY, repeated("─", width), width, ink);
    for (int i = 0; height > 1 && i < height; ++i) canvas.put(innerX, innerY + i, "│", 1, ink);
    return;
  }
  Ink ink{.fill = fill};
  if (const auto* text = std::get_if<protocol::TextNode>(&node.kind)) {
    ink.style = text->style;
    ink.bold = isBold(*text);
  }
  int row = innerY;
  for (const Line& line : box.lines) canvas.put(innerX, row++, line.text, line.width, ink);
  for (const Box& child : box.children) paint(canvas, child, innerX + child.x, innerY + child.y, fill);
}

void paintFrame(Canvas& canvas) {
  const Ink ink{.style = ForegroundStyle::tertiary};
  const int right = canvas.width() - 1;
  const int bottom = canvas.height() - 1;
  const auto edge = repeated("─", canvas.width() - 2);
  canvas.put(0, 0, "╭" + edge + "╮", canvas.width(), ink);
  for (int y = 1; y < bottom; ++y) {
    canvas.put(0, y, "│", 1, ink);
    canvas.put(right, y, "│", 1, ink);
  }
  canvas.put(0, bottom, "╰" + edge + "╯", canvas.width(), ink);
}

}  // namespace

std::string drawTerminalBoard(const protocol::Node& view, const TerminalOptions& options) {
  const int width = std::max(1, std::min(options.columns, options.widestBoard));
  const auto escapes = options.escapes ? Escapes::sgr : Escapes::none;
  Box box = measured(view, options.escapes ? Capsules::drawn : Capsules::bare);
  if (width < narrowestFrame) {
    place(box, width);
    Canvas canvas(width, std::max(box.height, 1));
    paint(canvas, box, 0, 0, {});
    return canvas.lines(escapes, TrailingBlanks::kept);
  }
  place(box, width - 2);
  Canvas canvas(width, std::max(box.height, 1) + 2);
  paintFrame(canvas);
  paint(canvas, box, 1, 1, {});
  return canvas.lines(escapes, TrailingBlanks::kept);
}

std::string drawPlainBoard(const protocol::Node& view, int columns) {
  Box box = measured(view, Capsules::bare);
  box.ideal -= box.padding.leading + box.padding.trailing;
  box.padding = {};
  const int width = std::clamp(box.ideal, 1, std::max(columns, 1));
  place(box, width);
  Canvas canvas(width, box.height);
  paint(canvas, box, 0, 0, {});
  return canvas.lines(Escapes::none, TrailingBlanks::cut);
}

}  // namespace render
