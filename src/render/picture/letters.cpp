#include "render/picture/letters.hpp"

#include <hb-ot.h>

namespace render {

bool hasColourGlyphs(PangoLayoutLine* line) {
  for (GSList* run = line->runs; run != nullptr; run = run->next) {
    auto* font = static_cast<PangoGlyphItem*>(run->data)->item->analysis.font;
    auto* face = hb_font_get_face(pango_font_get_hb_font(font));
    if (hb_ot_color_has_png(face) != 0 || hb_ot_color_has_layers(face) != 0) return true;
  }
  return false;
}

}  // namespace render
