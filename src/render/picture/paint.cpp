#include "render/picture/paint.hpp"

#include "render/picture/shape.hpp"
#include "render/type/type_style.hpp"

namespace render {
namespace {

/// From this many device pixels a point on, fast antialiasing is used: it looks the same there and takes a third of the
/// time.
constexpr double densePixels = 1.75;

class Painter {
 public:
  Painter(cairo_t* cairo, Drawing& drawing, const PaintStyle& style)
      : cairo_(cairo),
        drawing_(drawing),
        style_(style),
        palette_(palette(style.appearance, style.accent)),
        boardPixels_(drawing.board.magnification * style.pixels) {}

  void board() {
    const Rect box = snapped({0, 0, style_.form.size.width, style_.form.size.height}, style_.pixels);
    cairo_save(cairo_);
    if (drawing_.board.hasContainerBackground) {
      roundedPath(box, boardRadius(style_.form) * style_.pixels);
      fill(palette_.background);
    }
    cairo_rectangle(cairo_, box.x, box.y, box.width, box.height);
    cairo_clip(cairo_);
    for (const auto& item : drawing_.board.items) {
      std::visit([this](const auto& placed) { this->item(placed); }, item);
    }
    if (drawing_.board.hasContainerBackground) edge(box);
    cairo_restore(cairo_);
  }

 private:
  void setColour(const Colour& colour, double opacity = 1) {
    cairo_set_source_rgba(cairo_, colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0,
                          colour.opacity * opacity);
  }

  void fill(const Colour& colour, double opacity = 1) {
    setColour(colour, opacity);
    cairo_fill(cairo_);
  }

  void roundedPath(const Rect& device, double radius) {
    cairo_new_path(cairo_);
    for (const auto& corner : continuousCorners(device, radius)) {
      cairo_line_to(cairo_, corner.start.x, corner.start.y);
      cairo_curve_to(cairo_, corner.firstControl.x, corner.firstControl.y, corner.secondControl.x,
                     corner.secondControl.y, corner.end.x, corner.end.y);
    }
    cairo_close_path(cairo_);
  }

  /// Draws a hairline just within the board's edge, so that it stands out from a background of the same colour.
  void edge(const Rect& box) {
    const double width = edgeWidth(style_.pixels);
    const double half = width / 2;
    roundedPath({box.x + half, box.y + half, box.width - width, box.height - width},
                boardRadius(style_.form) * style_.pixels - half);
    cairo_set_line_width(cairo_, width);
    setColour(palette_.edge);
    cairo_stroke(cairo_);
  }

  void item(const PlacedCapsule& placed) {
    const Rect device = snapped(placed.frame, boardPixels_);
    roundedPath(device, std::min(device.width, device.height) / 2);
    fill(colourOf(placed.capsule->fill, palette_), std::clamp(placed.capsule->opacity, 0.0, 1.0));
  }

  void item(const PlacedRule& rule) {
    const Rect device = snappedRule(rule.frame, boardPixels_);
    cairo_rectangle(cairo_, device.x, device.y, device.width, device.height);
    fill(palette_.rule);
  }

  void item(const PlacedText& text) {
    const Colour colour = colourOf(text.text->style, palette_);
    for (const auto& line : drawing_.typesetter.lines(text)) {
      if (style_.redaction == Redaction::placeholder) {
        const Rect bar = snapped(placeholderBar(line, typeStyle(*text.text).size), boardPixels_);
        roundedPath(bar, bar.height / 2);
        fill(colour, palette_.placeholder);
      } else {
        letters(line, colour);
      }
    }
  }

  void letters(const ShapedLine& line, const Colour& colour) {
    cairo_save(cairo_);
    cairo_translate(cairo_, line.x * boardPixels_, std::round(line.baseline * boardPixels_));
    cairo_scale(cairo_, boardPixels_, boardPixels_);
    cairo_new_path(cairo_);
    if (style_.letters == LetterPaint::glyphs || hasColourGlyphs(line.line)) {
      setColour(colour);
      cairo_move_to(cairo_, 0, 0);
      pango_cairo_show_layout_line(cairo_, line.line);
    } else {
      cairo_move_to(cairo_, 0, 0);
      pango_cairo_layout_line_path(cairo_, line.line);
      cairo_set_antialias(cairo_, style_.pixels >= densePixels ? CAIRO_ANTIALIAS_FAST : CAIRO_ANTIALIAS_GOOD);
      fill(colour);
    }
    cairo_restore(cairo_);
  }

  cairo_t* cairo_;
  Drawing& drawing_;
  const PaintStyle& style_;
  const Palette palette_;
  double boardPixels_;  ///< device pixels for one of the board's points
};

}  // namespace

void paint(cairo_t* cairo, Drawing& drawing, const PaintStyle& style) { Painter(cairo, drawing, style).board(); }

std::expected<void, PictureError> paint(cairo_t* cairo, const protocol::Node& tree, const PictureOptions& options) {
  auto drawing = prepare(tree, options);
  if (!drawing) return std::unexpected(drawing.error());
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo, &matrix);
  double deviceX = 1;
  double deviceY = 1;
  cairo_surface_get_device_scale(cairo_get_group_target(cairo), &deviceX, &deviceY);
  const double pixels = matrix.xx * deviceX;
  if (!(pixels > 0)) return std::unexpected(PictureError::scaleOutOfRange);
  cairo_save(cairo);
  cairo_scale(cairo, 1 / pixels, 1 / pixels);
  paint(cairo, *drawing,
        {options.form, pixels, options.appearance, options.redaction, LetterPaint::outlines, options.accent});
  cairo_restore(cairo);
  return {};
}

}  // namespace render
