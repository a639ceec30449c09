#include "desktop/windows/fonts_in_preparation.hpp"

#include <pango/pangocairo.h>

#include "desktop/windows/board_picture.hpp"
#include "desktop/windows/loading_board.hpp"

namespace desktop {

FontsInPreparation::FontsInPreparation(const std::string& language)
    : fonts_(pango_cairo_font_map_new()), thread_([fonts = fonts_.get(), language] {
        // Every thread has a default of its own; this one's ends with it.
        pango_cairo_font_map_set_default(PANGO_CAIRO_FONT_MAP(fonts));
        BoardPicture("systemMedium", loadingBoard(), {.language = language});
        pango_cairo_font_map_set_default(nullptr);
      }) {}

void FontsInPreparation::use() {
  if (thread_.joinable()) thread_.join();
  pango_cairo_font_map_set_default(PANGO_CAIRO_FONT_MAP(fonts_.get()));
}

}  // namespace desktop
