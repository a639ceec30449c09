#include "desktop/windows/board_picture.hpp"

#include <cmath>
#include <utility>

#include "render/layout/family_form.hpp"
#include "render/picture/paint.hpp"
#include "render/picture/surface.hpp"

namespace desktop {
namespace {

render::PictureOptions optionsFor(protocol::WidgetFamily family, const BoardContent& content, const BoardLook& look) {
  return {.form = render::familyForm(family),
          .appearance = look.appearance,
          .redaction = content.redaction,
          .language = look.language,
          .accent = look.accent};
}

}  // namespace

BoardPicture::BoardPicture(protocol::WidgetFamily family, BoardContent content, BoardLook look)
    : family_(family),
      content_(std::move(content)),
      look_(std::move(look)),
      options_(optionsFor(family_, content_, look_)),
      drawing_(render::prepare(content_.view, options_)) {
  if (drawing_ && content_.redaction == render::Redaction::none) rows_ = render::readRows(*drawing_);
}

void BoardPicture::paint(cairo_t* cairo, Size size, int scale, render::Backdrop backdrop) {
  if (!drawing_) return;
  // Painted on an image surface first, so that letters look as in a picture file whatever the window's surface is.
  const render::OwnedSurface surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size.width * scale, size.height * scale));
  const render::OwnedCairo painting(cairo_create(surface.get()));
  render::paint(painting.get(), *drawing_,
                {.form = options_.form,
                 .pixels = scale * size.width / options_.form.size.width,
                 .appearance = options_.appearance,
                 .redaction = options_.redaction,
                 .accent = options_.accent,
                 .backdrop = backdrop});
  cairo_surface_set_device_scale(surface.get(), scale, scale);
  cairo_set_source_surface(cairo, surface.get(), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
  cairo_paint(cairo);
}

double BoardPicture::radiusAt(Size size) const {
  return render::boardRadius(options_.form) * size.width / options_.form.size.width;
}

}  // namespace desktop
