#include "render/type/typesetter.hpp"

#include <cmath>
#include <cstring>

#include "protocol/view_tree/localized_key.hpp"
#include "render/type/type_style.hpp"
#include "render/type/visible_text.hpp"

namespace render {
namespace {

using protocol::TextNode;

constexpr double tolerance = 0.05;  ///< in points; rounding to the library's units may add this much to a line

/// Disables hinting and subpixel colours whatever the screen's settings, so that text looks as in print.
void setFontOptions(PangoContext* context) {
  const Owned<cairo_font_options_t, cairo_font_options_destroy> options(cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context, options.get());
}

OwnedFontDescription describe(const TypeStyle& style) {
  OwnedFontDescription description(pango_font_description_new());
  pango_font_description_set_family_static(description.get(), fontFamilies);
  pango_font_description_set_absolute_size(description.get(), style.size * PANGO_SCALE);
  pango_font_description_set_weight(description.get(), static_cast<PangoWeight>(style.weight));
  return description;
}

TextExtent extentOf(PangoLayout* layout) {
  PangoRectangle logical;
  pango_layout_get_extents(layout, nullptr, &logical);
  return {{toPoints(logical.width), toPoints(logical.height)},
          toPoints(pango_layout_get_baseline(layout)),
          pango_layout_get_line_count(layout)};
}

/// The readable text of a line: hidden text is replaced by the ellipsis, and the line separator is removed.
std::string shownText(PangoLayoutLine* line) {
  const char* text = pango_layout_get_text(line->layout);
  std::string shown(text + line->start_index, static_cast<std::size_t>(line->length));
  for (GSList* run = line->runs; run != nullptr; run = run->next) {
    const auto* item = static_cast<PangoGlyphItem*>(run->data)->item;
    if ((item->analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) == 0) continue;
    // The hidden text may reach beyond this line.
    const auto from = static_cast<std::size_t>(item->offset - line->start_index);
    shown = shown.substr(0, from) + "\u2026";
    break;
  }
  if (const auto end = shown.find(lineSeparator); end != std::string::npos) shown.erase(end);
  return shown;
}

}  // namespace

void beginLoadingFonts() { pango_cairo_font_map_get_default(); }

std::expected<Typesetter, NoFont> Typesetter::create(const std::string& language) {
  OwnedContext context(pango_font_map_create_context(pango_cairo_font_map_get_default()));
  setFontOptions(context.get());
  pango_context_set_round_glyph_positions(context.get(), FALSE);
  pango_context_set_base_dir(context.get(), PANGO_DIRECTION_LTR);
  pango_context_set_language(context.get(), pango_language_from_string(language.empty() ? "und" : language.c_str()));
  const OwnedFont font(pango_context_load_font(context.get(), describe({12, 400}).get()));
  if (font == nullptr) return std::unexpected(NoFont{});
  return Typesetter(std::move(context));
}

std::string Typesetter::family() const {
  const OwnedFont font(pango_context_load_font(context_.get(), describe({12, 400}).get()));
  if (font == nullptr) return {};
  const OwnedFontDescription description(pango_font_describe(font.get()));
  const char* const name = pango_font_description_get_family(description.get());
  return name == nullptr ? std::string() : std::string(name);
}

Typesetter::Shaped& Typesetter::shaped(const TextNode& text) {
  auto& entry = shaped_[&text];
  if (entry.layout != nullptr) return entry;
  entry.layout.reset(pango_layout_new(context_.get()));
  auto* layout = entry.layout.get();
  const auto visible = visibleText(protocol::asWritten(text), text.lineLimit.value_or(unlimitedLines));
  pango_layout_set_text(layout, visible.data(), static_cast<int>(visible.size()));
  pango_layout_set_font_description(layout, describe(typeStyle(text)).get());
  pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
  const OwnedAttributes attributes(pango_attr_list_new());
  // Hyphens would change the text, so a word that is too long for a line is broken without one.
  pango_attr_list_insert(attributes.get(), pango_attr_insert_hyphens_new(FALSE));
  if (text.monospacedDigits) pango_attr_list_insert(attributes.get(), pango_attr_font_features_new("tnum=1"));
  pango_layout_set_attributes(layout, attributes.get());
  entry.natural = extentOf(layout);
  return entry;
}

/// Sets the limits of the text's layout, if the text exceeds them.
TextExtent Typesetter::limit(Shaped& shaped, double width, int maxLines) {
  auto* layout = shaped.layout.get();
  const bool fits = shaped.natural.size.width <= width + tolerance && shaped.natural.lines <= maxLines;
  if (fits) {
    if (shaped.maxLines != 0) {
      pango_layout_set_width(layout, -1);
      pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_NONE);
      shaped.maxLines = 0;
    }
    return shaped.natural;
  }
  if (shaped.maxLines != maxLines || shaped.width != width) {
    const bool limited = maxLines != unlimitedLines;
    pango_layout_set_width(layout, static_cast<int>(std::floor(std::max(0.0, width) * PANGO_SCALE)));
    pango_layout_set_height(layout, limited ? -maxLines : -1);
    pango_layout_set_ellipsize(layout, limited ? PANGO_ELLIPSIZE_END : PANGO_ELLIPSIZE_NONE);
    shaped.maxLines = maxLines;
    shaped.width = width;
  }
  return extentOf(layout);
}

TextExtent Typesetter::natural(const TextNode& text) { return shaped(text).natural; }

std::optional<TextExtent> Typesetter::within(const TextNode& text, double width, int maxLines) {
  auto extent = limit(shaped(text), width, maxLines);
  if (extent.size.width > width + tolerance || extent.lines > maxLines) return std::nullopt;
  extent.size.width = std::min(extent.size.width, width);
  return extent;
}

std::vector<ShapedLine> Typesetter::lines(const PlacedText& text) {
  auto& entry = shaped(*text.text);
  limit(entry, text.widthLimit, text.maxLines);
  auto* layout = entry.layout.get();
  PangoRectangle whole;
  pango_layout_get_extents(layout, nullptr, &whole);

  std::vector<ShapedLine> lines;
  const OwnedIterator iterator(pango_layout_get_iter(layout));
  do {
    auto* line = pango_layout_iter_get_line_readonly(iterator.get());
    PangoRectangle logical;
    pango_layout_iter_get_line_extents(iterator.get(), nullptr, &logical);
    const double width = toPoints(logical.width);
    const double x = text.centred ? std::max(0.0, text.frame.width - width) / 2 : toPoints(logical.x - whole.x);
    lines.push_back({line, text.frame.x + x, text.frame.y + toPoints(pango_layout_iter_get_baseline(iterator.get())),
                     width, pango_layout_line_get_resolved_direction(line) == PANGO_DIRECTION_RTL, shownText(line)});
  } while (pango_layout_iter_next_line(iterator.get()) != FALSE);
  return lines;
}

std::string Typesetter::visible(const TextNode& text) { return pango_layout_get_text(shaped(text).layout.get()); }

}  // namespace render

#ifdef VAMBA_SANITIZED
// The font library keeps its data until the process ends, in a way that the leak checker reports.
extern "C" const char* __lsan_default_suppressions();
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
#endif
