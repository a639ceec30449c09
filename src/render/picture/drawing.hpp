// A tree made ready for any painter: laid out in the box of the options, with the fonts that it was measured in.
#pragma once

#include <expected>
#include <memory>
#include <string>

#include "render/layout/layout.hpp"
#include "render/picture/picture.hpp"
#include "render/type/typesetter.hpp"

namespace render {

struct Drawing {
  std::unique_ptr<const protocol::Node> tree;  ///< what the others refer to
  Typesetter typesetter;
  Board board;
};

/// Whether the board is whole, see `Board::whole`. True as well where nothing can be drawn at all.
bool fits(const protocol::Node& tree, const PictureOptions& options);

std::expected<Drawing, PictureError> prepare(const protocol::Node& tree, const PictureOptions& options);

/// The texts of the board as they are read, a line each, before any of them is cut.
std::string readAloud(Drawing& drawing);

/// The bar that stands for a redacted line of text of this type size, in the board's points.
Rect placeholderBar(const ShapedLine& line, double typeSize);

}  // namespace render
