#include <algorithm>

#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"
#include "render/picture/shape.hpp"
#include "render/picture/surface.hpp"
#include "render/picture/svg_writer.hpp"
#include "render/type/type_style.hpp"
#include "render/type/visible_text.hpp"

namespace render {
namespace {

/// A context that turns letters into outlines; nothing is painted on it. The surface is unbounded, since the library
/// leaves out letters beyond the bounds.
struct Outliner {
  OwnedSurface surface{cairo_recording_surface_create(CAIRO_CONTENT_ALPHA, nullptr)};
  OwnedCairo cairo{cairo_create(surface.get())};
};

class Svg {
 public:
  Svg(Drawing& drawing, const PictureOptions& options)
      : drawing_(drawing),
        options_(options),
        palette_(palette(options.appearance, options.accent)),
        boardPixels_(drawing.board.magnification * options.scale) {}

  std::string file() && {
    const Rect box = snapped({0, 0, options_.form.size.width, options_.form.size.height}, options_.scale);
    std::string viewBox = "0 0 ";
    appendNumber(viewBox, box.width);
    viewBox += ' ';
    appendNumber(viewBox, box.height);
    const auto title = visibleText(options_.title, 1);
    const auto description = redacted() ? std::string() : readAloud(readRows(drawing_));
    std::string names;
    if (!title.empty()) names += "board-title";
    if (!description.empty()) names += names.empty() ? "board-desc" : " board-desc";

    svg_.element("svg").attribute("xmlns", "http://www.w3.org/2000/svg");
    svg_.attribute("width", box.width).attribute("height", box.height).attribute("viewBox", viewBox);
    svg_.attribute("role", "img");
    if (!names.empty()) svg_.attribute("aria-labelledby", names);
    if (const auto language = visibleText(options_.language, 1); !language.empty()) {
      svg_.attribute("lang", language).attribute("xml:lang", language);
    }
    svg_.attribute("xml:space", "preserve").open();
    if (!title.empty()) svg_.element("title").attribute("id", "board-title").content(title);
    if (!description.empty()) svg_.element("desc").attribute("id", "board-desc").content(description);
    if (drawing_.board.hasContainerBackground) {
      svg_.element("path").attribute("d", rounded(box, boardRadius(options_.form) * options_.scale));
      svg_.colour("fill", palette_.background).close();
    }
    svg_.element("g").attribute("font-family", fontFamilies).open();
    for (const auto& item : drawing_.board.items) {
      std::visit([this](const auto& placed) { this->item(placed); }, item);
    }
    svg_.end("g");
    if (drawing_.board.hasContainerBackground) edge(box);
    svg_.end("svg");
    return std::move(svg_).take();
  }

 private:
  bool redacted() const { return options_.redaction == Redaction::placeholder; }

  static std::string rounded(const Rect& device, double radius) {
    std::string data;
    const auto point = [&](char command, const Point& at) {
      data += command;
      appendNumber(data, at.x);
      data += ' ';
      appendNumber(data, at.y);
    };
    for (const auto& corner : continuousCorners(device, radius)) {
      point(data.empty() ? 'M' : 'L', corner.start);
      point('C', corner.firstControl);
      point(' ', corner.secondControl);
      point(' ', corner.end);
    }
    data += 'Z';
    return data;
  }

  void edge(const Rect& box) {
    const double width = edgeWidth(options_.scale);
    const double half = width / 2;
    const Rect within{box.x + half, box.y + half, box.width - width, box.height - width};
    svg_.element("path").attribute("d", rounded(within, boardRadius(options_.form) * options_.scale - half));
    svg_.attribute("fill", "none").colour("stroke", palette_.edge).attribute("stroke-width", width).close();
  }

  void item(const PlacedCapsule& placed) {
    const Rect device = snapped(placed.frame, boardPixels_);
    Colour colour = colourOf(placed.capsule->fill, palette_);
    colour.opacity *= std::clamp(placed.capsule->opacity, 0.0, 1.0);
    svg_.element("path").attribute("d", rounded(device, std::min(device.width, device.height) / 2));
    svg_.colour("fill", colour).close();
  }

  void item(const PlacedRule& rule) {
    const Rect device = snappedRule(rule.frame, boardPixels_);
    svg_.element("rect").attribute("x", device.x).attribute("y", device.y);
    svg_.attribute("width", device.width).attribute("height", device.height);
    svg_.colour("fill", palette_.rule).close();
  }

  void item(const PlacedText& text) {
    for (const auto& line : drawing_.typesetter.lines(text)) {
      if (redacted()) {
        bar(line, *text.text);
      } else if (options_.lettering == Lettering::outlines && !hasColourGlyphs(line.line)) {
        outlines(line, *text.text);
      } else if (!line.shown.empty()) {
        letters(line, *text.text);
      }
    }
  }

  void bar(const ShapedLine& line, const protocol::TextNode& text) {
    const Rect device = snapped(placeholderBar(line, typeStyle(text).size), boardPixels_);
    Colour colour = colourOf(text.style, palette_);
    colour.opacity *= palette_.placeholder;
    svg_.element("path").attribute("d", rounded(device, device.height / 2)).colour("fill", colour).close();
  }

  void letters(const ShapedLine& line, const protocol::TextNode& text) {
    const auto style = typeStyle(text);
    // A line of right-to-left text begins at its right edge.
    const double x = line.rightToLeft ? line.x + line.width : line.x;
    svg_.element("text").attribute("x", x * boardPixels_).attribute("y", std::round(line.baseline * boardPixels_));
    if (line.rightToLeft) svg_.attribute("direction", "rtl");
    svg_.attribute("font-size", style.size * boardPixels_);
    if (style.weight != 400) svg_.attribute("font-weight", style.weight);
    if (text.monospacedDigits) svg_.attribute("style", "font-variant-numeric:tabular-nums");
    // Keeps the line within its place in a viewer that only has a wider font.
    svg_.attribute("textLength", line.width * boardPixels_).attribute("lengthAdjust", "spacingAndGlyphs");
    svg_.colour("fill", colourOf(text.style, palette_)).content(line.shown);
  }

  void outlines(const ShapedLine& line, const protocol::TextNode& text) {
    // The library stores outlines in 1/256 pixel; enlarging them first keeps more precision.
    constexpr double precision = 64;
    auto* cairo = outliner_.cairo.get();
    cairo_identity_matrix(cairo);
    cairo_scale(cairo, precision, precision);
    cairo_translate(cairo, line.x * boardPixels_, std::round(line.baseline * boardPixels_));
    cairo_scale(cairo, boardPixels_, boardPixels_);
    cairo_new_path(cairo);
    cairo_move_to(cairo, 0, 0);
    pango_cairo_layout_line_path(cairo, line.line);
    cairo_identity_matrix(cairo);
    cairo_scale(cairo, precision, precision);
    const Owned<cairo_path_t, cairo_path_destroy> path(cairo_copy_path(cairo));
    const auto data = pathData(*path);
    if (data.empty()) return;
    svg_.element("path").attribute("d", data).colour("fill", colourOf(text.style, palette_)).close();
  }

  static std::string pathData(const cairo_path_t& path) {
    std::string data;
    const auto points = [&](char command, const cairo_path_data_t* first, int count) {
      data += command;
      for (int i = 1; i <= count; ++i) {
        if (i > 1) data += ' ';
        appendNumber(data, first[i].point.x);
        data += ' ';
        appendNumber(data, first[i].point.y);
      }
    };
    for (int i = 0; i < path.num_data; i += path.data[i].header.length) {
      const auto* element = &path.data[i];
      switch (element->header.type) {
        case CAIRO_PATH_MOVE_TO: {
          // A "move to" at the end draws nothing.
          const int next = i + element->header.length;
          if (next < path.num_data && path.data[next].header.type != CAIRO_PATH_MOVE_TO) points('M', element, 1);
          break;
        }
        case CAIRO_PATH_LINE_TO:
          points('L', element, 1);
          break;
        case CAIRO_PATH_CURVE_TO:
          points('C', element, 3);
          break;
        case CAIRO_PATH_CLOSE_PATH:
          data += 'Z';
          break;
      }
    }
    return data;
  }

  Drawing& drawing_;
  const PictureOptions& options_;
  const Palette palette_;
  double boardPixels_;  ///< units of the file for one of the board's points
  Outliner outliner_;
  SvgWriter svg_;
};

}  // namespace

Picture drawSvg(const protocol::Node& tree, const PictureOptions& options) {
  auto drawing = prepare(tree, options);
  if (!drawing) return std::unexpected(drawing.error());
  return Svg(*drawing, options).file();
}

}  // namespace render
