// What the paint pass draws on: pieces of text on rows of cells, each with its ink, written out as lines of one width.
// Rows store pieces instead of cells, so the cost depends on the text and not on the size of the board.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "protocol/view_tree/node.hpp"

namespace render::terminal {

/// How a piece of text looks. Red and the default colour are those of the user's theme. The other colours are from the
/// 256-colour palette, since some themes make the sixteen themed ones unreadable.
struct Ink {
  protocol::ForegroundStyle style = protocol::ForegroundStyle::primary;
  bool bold = false;
  std::optional<protocol::ForegroundStyle> fill;  ///< the fill of the capsule behind the text
  bool operator==(const Ink&) const = default;
};

enum class Escapes { none, sgr };
enum class TrailingBlanks { kept, cut };

class Canvas {
 public:
  Canvas(int width, int height);

  int width() const { return width_; }
  int height() const { return static_cast<int>(rows_.size()); }

  /// Puts text of that display width at a cell. Text that would leave the canvas or overlap an earlier piece is
  /// ignored, so lines always keep their width.
  void put(int x, int y, std::string text, int width, const Ink& ink);

  /// Fills a rectangle. Text that is put on it must have the same fill in its ink.
  void fill(int x, int y, int width, int height, protocol::ForegroundStyle style);

  /// All rows, each ended by '\n'.
  std::string lines(Escapes escapes, TrailingBlanks blanks) const;

 private:
  struct Piece {
    int x;
    int width;
    std::string text;
    Ink ink;
  };
  struct Row {
    std::vector<Piece> pieces;  ///< by x, apart from each other
    std::vector<Piece> fills;   ///< without text, in the order painted
  };

  int width_;
  std::vector<Row> rows_;
};

}  // namespace render::terminal
