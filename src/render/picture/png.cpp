#include "render/picture/paint.hpp"
#include "render/picture/picture.hpp"
#include "render/picture/png_file.hpp"
#include "render/picture/surface.hpp"

namespace render {

Picture drawPng(const protocol::Node& tree, const PictureOptions& options) {
  auto drawing = prepare(tree, options);
  if (!drawing) return std::unexpected(drawing.error());
  const Rect device = snapped({0, 0, options.form.size.width, options.form.size.height}, options.scale);
  const OwnedSurface surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(device.width), static_cast<int>(device.height)));
  const OwnedCairo cairo(cairo_create(surface.get()));
  paint(cairo.get(), *drawing,
        {options.form, options.scale, options.appearance, options.redaction, LetterPaint::outlines, options.accent});
  cairo_surface_flush(surface.get());
  if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) return std::unexpected(PictureError::notEncoded);

  auto file = pngFile({cairo_image_surface_get_data(surface.get()), static_cast<std::uint32_t>(device.width),
                       static_cast<std::uint32_t>(device.height),
                       static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()))},
                      options.scale);
  if (!file) return std::unexpected(PictureError::notEncoded);
  return std::move(*file);
}

}  // namespace render
