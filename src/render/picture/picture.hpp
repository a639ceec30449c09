// A view tree as a picture: the bytes of a PNG, SVG or PDF file. The same tree and options give the same bytes.
//
// Texts of the tree are drawn as they stand: keys of localised texts are the host's to replace first.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "protocol/view_tree/node.hpp"
#include "render/colour/palette.hpp"
#include "render/layout/family_form.hpp"

namespace render {

/// Whether texts are drawn, or rounded bars in their place: sample data is not to be taken for one's own.
enum class Redaction { none, placeholder };

/// Whether an SVG holds text, which can be searched and read aloud, or the outlines of its letters, which look alike
/// where the font is missing.
enum class Lettering { text, outlines };

struct PictureOptions {
  BoardForm form = mediumFamily;  ///< see `familyForm`
  double scale = 1;               ///< pixels a point in a PNG; in the others the natural size is as many times larger
  Appearance appearance = Appearance::light;
  Redaction redaction = Redaction::none;
  Lettering lettering = Lettering::text;        ///< of an SVG
  std::string title;                            ///< what the picture is called by those who read it aloud
  std::string language;                         ///< of the texts, as in BCP 47; empty: unknown
  std::optional<Colour> accent = std::nullopt;  ///< a person's own tint, made readable; none: the board's
};

enum class PictureError {
  noFont,           ///< no font is installed
  scaleOutOfRange,  ///< the scale is no number, or the picture would be smaller than a pixel or beyond 16384 a side
  notEncoded,       ///< a library refused, for want of memory
};

/// What to tell a person, without a full stop: "no font is installed".
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
