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
        palette_(palette(style.appearance, style.accent, style.backdrop)),
        boardPixels_(drawing.board.magnification * style.pixels) {}

  void board() {
    const Rect box = snapped({0, 0, style_.form.size.width, style_.form.size.height}, style_.pixels);
    cairo_save(cairo_);
    const bool hasPaper = drawing_.board.hasContainerBackground && style_.backdrop != Backdrop::none;
    if (hasPaper) {
      roundedPath(box, boardRadius(style_.form) * style_.pixels);
      fill(palette_.background);
    }
    cairo_rectangle(cairo_, box.x, box.y, box.width, box.height);
    cairo_clip(cairo_);
    if (drawing_.board.hasContainerBackground && !hasPaper) shade();
    for (const auto& item : drawing_.board.items) {
      std::visit([this](const auto& placed) { this->item(placed); }, item);
    }
    if (hasPaper) edge(box);
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

  /// The colour of the paper behind each text and badge, soft at its edge. Several layers, each a little smaller, have
  /// the background's opacity together: the innermost, which all letters are on, has it in full.
  void shade() {
    constexpr int layers = 5;
    constexpr double least = 2;  // points around a text
    constexpr double reach = 8;
    const double opacity = 1 - std::pow(1 - palette_.background.opacity, 1.0 / layers);
    for (int layer = 0; layer < layers; ++layer) {
      const double around = reach + (least - reach) * layer / (layers - 1);
      // As one shape, so that neighbouring texts do not add up.
      cairo_push_group(cairo_);
      for (const auto& item : drawing_.board.items) {
        if (const auto* text = std::get_if<PlacedText>(&item)) {
          for (const auto& line : drawing_.typesetter.lines(*text)) shadeBehind(extent(line), around);
        } else if (const auto* placed = std::get_if<PlacedCapsule>(&item)) {
          shadeBehind(placed->frame, around);
        }
      }
      cairo_pop_group_to_source(cairo_);
      cairo_paint_with_alpha(cairo_, opacity);
    }
  }

  void shadeBehind(const Rect& frame, double around) {
    const Rect grown{frame.x - around, frame.y - around, frame.width + 2 * around, frame.height + 2 * around};
    const Rect device = snapped(grown, boardPixels_);
    roundedPath(device, std::min(device.height / 2, (around + 2) * boardPixels_));
    Colour paper = palette_.background;
    paper.opacity = 1;
    fill(paper);
  }

  /// From the highest to the lowest letter of its font.
  static Rect extent(const ShapedLine& line) {
    PangoRectangle logical{};
    pango_layout_line_get_extents(line.line, nullptr, &logical);
    return {line.x, line.baseline + pango_units_to_double(logical.y), line.width,
            pango_units_to_double(logical.height)};
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

}  // namespace render
