// A tree made ready for any painter: laid out in the box of the options, with its fonts; and what all painters share.
#pragma once

#include <expected>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "render/layout/layout.hpp"
#include "render/picture/picture.hpp"
#include "render/type/typesetter.hpp"

namespace render {

struct Drawing {
  std::unique_ptr<const protocol::Node> tree;  ///< `typesetter` and `board` refer to it
  Typesetter typesetter;
  Board board;
};

/// Whether the board is whole, see `Board::whole`. Also true if it cannot be drawn at all.
bool fits(const protocol::Node& tree, const PictureOptions& options);

std::expected<Drawing, PictureError> prepare(const protocol::Node& tree, const PictureOptions& options);

/// A row of the board as it is read aloud: its texts in reading order, parted by commas, and the box of those texts in
/// points of the form's size.
struct ReadRow {
  std::string text;
  Rect frame;
  bool operator==(const ReadRow&) const = default;
};

/// The rows of the board from top to bottom, with their full texts. Texts that stand below each other are rows of their
/// own unless they are in one horizontal stack: a meeting gives "10:00, Narada, Strona wydawnictwa, jutro".
std::vector<ReadRow> readRows(Drawing& drawing);

/// The texts of the rows, one row a line.
std::string readAloud(std::span<const ReadRow> rows);

/// The width in device pixels of the hairline just within the board's edge, at `pixels` device pixels a point.
double edgeWidth(double pixels);

/// Whether the line contains colour glyphs, such as emoji. They have no outlines, so painters show them as glyphs.
bool hasColourGlyphs(PangoLayoutLine* line);

/// The bar that replaces a redacted line of text of this type size, in the board's points.
Rect placeholderBar(const ShapedLine& line, double typeSize);

}  // namespace render
