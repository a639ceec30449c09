#include "render/picture/drawing.hpp"

#include <algorithm>
#include <cmath>
#include <map>

#include <hb-ot.h>

#include "render/layout/sentence.hpp"
#include "render/type/visible_text.hpp"

namespace render {
namespace {

constexpr double longestSide = 16384;  ///< pixels

using RowNumbers = std::map<const protocol::TextNode*, std::size_t>;

/// Gives every text below `node` the number `row`.
void numberTexts(const protocol::Node& node, std::size_t row, RowNumbers& rowOf) {
  if (const auto* text = std::get_if<protocol::TextNode>(&node.kind)) rowOf[text] = row;
  if (const auto* column = std::get_if<protocol::VStackNode>(&node.kind)) {
    for (const auto& child : column->children) numberTexts(child, row, rowOf);
  }
  if (const auto* line = std::get_if<protocol::HStackNode>(&node.kind)) {
    for (const auto& child : line->children) numberTexts(child, row, rowOf);
  }
}

/// The children of vertical stacks are rows of their own, whether or not the stacks are nested.
void numberRows(const protocol::Node& node, RowNumbers& rowOf, std::size_t& count) {
  if (const auto* column = std::get_if<protocol::VStackNode>(&node.kind)) {
    for (const auto& child : column->children) numberRows(child, rowOf, count);
  } else {
    numberTexts(node, count++, rowOf);
  }
}

std::string oneLine(std::string text) {
  for (auto at = text.find(lineSeparator); at != std::string::npos; at = text.find(lineSeparator)) {
    text.replace(at, lineSeparator.size(), 1, ' ');
  }
  return text;
}

Rect magnified(const Rect& rect, double by) { return {rect.x * by, rect.y * by, rect.width * by, rect.height * by}; }

Rect united(const Rect& one, const Rect& other) {
  const double left = std::min(one.x, other.x);
  const double top = std::min(one.y, other.y);
  return {left, top, std::max(one.right(), other.right()) - left, std::max(one.bottom(), other.bottom()) - top};
}

}  // namespace

std::expected<Drawing, PictureError> prepare(const protocol::Node& tree, const PictureOptions& options) {
  for (const double side : {options.form.size.width * options.scale, options.form.size.height * options.scale}) {
    // Written so that NaN is out of range, too.
    if (!(side >= 1 && side <= longestSide)) return std::unexpected(PictureError::scaleOutOfRange);
  }
  auto typesetter = Typesetter::create(options.language);
  if (!typesetter) return std::unexpected(PictureError::noFont);
  auto kept = std::make_unique<const protocol::Node>(withLargerSentence(tree));
  auto board = layOut(*kept, options.form, *typesetter);
  return Drawing{std::move(kept), std::move(*typesetter), std::move(board)};
}

bool fits(const protocol::Node& tree, const PictureOptions& options) {
  const auto drawing = prepare(tree, options);
  return !drawing || drawing->board.whole;
}

std::vector<ReadRow> readRows(Drawing& drawing) {
  RowNumbers rowOf;
  std::size_t count = 0;
  numberRows(*drawing.tree, rowOf, count);
  std::vector<ReadRow> rows(count);
  for (const auto& item : drawing.board.items) {
    const auto* placed = std::get_if<PlacedText>(&item);
    if (placed == nullptr) continue;
    auto& row = rows[rowOf.at(placed->text)];
    const auto text = oneLine(drawing.typesetter.visible(*placed->text));
    if (text.empty()) continue;
    const Rect frame = magnified(placed->frame, drawing.board.magnification);
    row.frame = row.text.empty() ? frame : united(row.frame, frame);
    if (!row.text.empty()) row.text += ", ";
    row.text += text;
  }
  std::erase_if(rows, [](const ReadRow& row) { return row.text.empty(); });
  return rows;
}

std::string readAloud(std::span<const ReadRow> rows) {
  std::string all;
  for (const auto& row : rows) {
    if (!all.empty()) all += '\n';
    all += row.text;
  }
  return all;
}

double edgeWidth(double pixels) { return std::max(1.0, std::floor(pixels / 2)); }

bool hasColourGlyphs(PangoLayoutLine* line) {
  for (GSList* run = line->runs; run != nullptr; run = run->next) {
    auto* font = static_cast<PangoGlyphItem*>(run->data)->item->analysis.font;
    auto* face = hb_font_get_face(pango_font_get_hb_font(font));
    if (hb_ot_color_has_png(face) != 0 || hb_ot_color_has_layers(face) != 0) return true;
  }
  return false;
}

Rect placeholderBar(const ShapedLine& line, double typeSize) {
  // From the baseline to the height of capitals, which leaves the same space between lines as letters do.
  constexpr double height = 0.73;
  return {line.x, line.baseline - height * typeSize, line.width, height * typeSize};
}

}  // namespace render
