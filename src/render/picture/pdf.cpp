#include <cairo-pdf.h>

#include "render/picture/paint.hpp"
#include "render/picture/picture.hpp"
#include "render/picture/surface.hpp"
#include "render/type/visible_text.hpp"

namespace render {
Picture drawPdf(const protocol::Node& tree, const PictureOptions& options) {
  auto drawing = prepare(tree, options);
  if (!drawing) return std::unexpected(drawing.error());
  std::string file;
  const OwnedSurface surface(cairo_pdf_surface_create_for_stream(
      appendToFile, &file, options.form.size.width * options.scale, options.form.size.height * options.scale));
  // An empty date is left out. Otherwise the library writes the current time, and equal boards would give unequal
  // files.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
  if (const auto title = visibleText(options.title, 1); !title.empty()) {
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, title.c_str());
  }
  const OwnedCairo cairo(cairo_create(surface.get()));
  // Paper has no pixels, so positions are rounded to steps too small to be seen.
  constexpr double fineness = 16;
  cairo_scale(cairo.get(), 1 / fineness, 1 / fineness);
  paint(cairo.get(), *drawing,
        {options.form, options.scale * fineness, options.appearance, options.redaction, LetterPaint::glyphs,
         options.accent});
  cairo_show_page(cairo.get());
  cairo_surface_finish(surface.get());
  if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS ||
      cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
    return std::unexpected(PictureError::notEncoded);
  }
  return file;
}

}  // namespace render
