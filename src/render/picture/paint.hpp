// The third pass: a drawing onto a surface of the graphics library. The one header of pictures that names it, for
// those who have a surface of their own.
#pragma once

#include <expected>
#include <optional>

#include <cairo.h>

#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"

namespace render {

/// Letters as their outlines, placed to the fraction of a pixel; or as glyphs of their font, which a PDF keeps as text.
enum class LetterPaint { outlines, glyphs };

/// Where the colours and sizes of a painting come from.
struct PaintStyle {
  BoardForm form;     ///< the box
  double pixels = 1;  ///< device pixels a point
  Appearance appearance = Appearance::light;
  Redaction redaction = Redaction::none;
  LetterPaint letters = LetterPaint::outlines;
  std::optional<Colour> accent = std::nullopt;  ///< a person's own tint
};

/// Paints in device pixels from the surface's origin, over what is there.
void paint(cairo_t* cairo, Drawing& drawing, const PaintStyle& style);

/// Lays the tree out and paints it, with a point for each unit of `cairo`; the scale of the options is not asked.
std::expected<void, PictureError> paint(cairo_t* cairo, const protocol::Node& tree, const PictureOptions& options);

}  // namespace render
