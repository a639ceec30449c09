#include "render/picture/drawing.hpp"

#include <algorithm>
#include <cmath>

#include <hb-ot.h>

#include "render/layout/sentence.hpp"
#include "render/type/visible_text.hpp"

namespace render {
namespace {

constexpr double longestSide = 16384;  ///< pixels

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

std::string readAloud(Drawing& drawing) {
  std::string all;
  for (const auto& item : drawing.board.items) {
    const auto* placed = std::get_if<PlacedText>(&item);
    if (placed == nullptr) continue;
    auto text = drawing.typesetter.visible(*placed->text);
    for (auto at = text.find(lineSeparator); at != std::string::npos; at = text.find(lineSeparator)) {
      text.replace(at, lineSeparator.size(), 1, ' ');
    }
    if (text.empty()) continue;
    if (!all.empty()) all += '\n';
    all += text;
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
