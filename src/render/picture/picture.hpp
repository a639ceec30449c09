// Draws a view tree as a PNG, SVG or PDF file. The same tree and options always give the same bytes.
//
// Texts are drawn as they are, so the host must replace the keys of localised texts first.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "protocol/view_tree/node.hpp"
#include "render/colour/palette.hpp"
#include "render/layout/family_form.hpp"

namespace render {

/// Whether texts are drawn, or rounded bars in their place, so that nobody takes sample data for their own.
enum class Redaction { none, placeholder };

/// Whether an SVG contains text, which can be searched and read aloud, or outlines of letters, which look the same
/// without the font.
enum class Lettering { text, outlines };

struct PictureOptions {
  BoardForm form = mediumFamily;  ///< see `familyForm`
  double scale = 1;               ///< of a PNG: pixels a point; of the others: factor of the natural size
  Appearance appearance = Appearance::light;
  Redaction redaction = Redaction::none;
  Lettering lettering = Lettering::text;        ///< of an SVG
  std::string title;                            ///< the picture's name for screen readers
  std::string language;                         ///< of the texts, as in BCP 47; empty if unknown
  std::optional<Colour> accent = std::nullopt;  ///< the person's own tint, which is made readable
};

enum class PictureError {
  noFont,           ///< no font is installed
  scaleOutOfRange,  ///< the scale is not a number, or a side would be less than 1 or more than 16384 pixels
  notEncoded,       ///< a library failed, usually for lack of memory
};

/// A message for a person without a full stop: "no font is installed".
constexpr std::string_view describe(PictureError error) {
  switch (error) {
    case PictureError::noFont:
      return "no font is installed";
    case PictureError::scaleOutOfRange:
      return "the scale is out of range";
    case PictureError::notEncoded:
      return "the picture could not be encoded";
  }
  return "";
}

using Picture = std::expected<std::string, PictureError>;

Picture drawPng(const protocol::Node& tree, const PictureOptions& options);
Picture drawSvg(const protocol::Node& tree, const PictureOptions& options);
Picture drawPdf(const protocol::Node& tree, const PictureOptions& options);

}  // namespace render
