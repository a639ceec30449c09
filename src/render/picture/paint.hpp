// The third pass: paints a drawing on a surface of the graphics library. For callers with a surface of their own, such
// as windows.
#pragma once

#include <optional>

#include <cairo.h>

#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"

namespace render {

/// Whether letters are painted as outlines, which allows fractions of a pixel, or as glyphs, which a PDF keeps as text.
enum class LetterPaint { outlines, glyphs };

/// The colours and sizes of a painting.
struct PaintStyle {
  BoardForm form;     ///< the box
  double pixels = 1;  ///< device pixels a point
  Appearance appearance = Appearance::light;
  Redaction redaction = Redaction::none;
  LetterPaint letters = LetterPaint::outlines;
  std::optional<Colour> accent = std::nullopt;  ///< a person's own tint
  Backdrop backdrop = Backdrop::solid;
};

/// Paints in device pixels at the surface's origin, over the existing content.
void paint(cairo_t* cairo, Drawing& drawing, const PaintStyle& style);

}  // namespace render
