// The paint pass's paper: pieces of text on rows of cells, each with its ink, written out as lines of one width.
// Rows keep pieces, not cells, so a board costs what it shows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "protocol/view_tree/node.hpp"

namespace render::terminal {

/// How a piece of text looks. Colours are of the 256-colour palette where the sixteen themed ones would vanish on some
/// background; red and the text's own colour are left to the user's theme.
struct Ink {
  protocol::ForegroundStyle style = protocol::ForegroundStyle::primary;
  bool bold = false;
  std::optional<protocol::ForegroundStyle> fill;  ///< of the capsule it stands on
  bool operator==(const Ink&) const = default;
};

enum class Escapes { none, sgr };
enum class TrailingBlanks { kept, cut };

class Canvas {
 public:
  Canvas(int width, int height);

  int width() const { return width_; }
  int height() const { return static_cast<int>(rows_.size()); }

  /// Puts text of that display width at a cell. What would reach beyond the canvas is not put, nor is what would stand
  /// on a piece put before: the lines keep their width even then.
  void put(int x, int y, std::string text, int width, const Ink& ink);

  /// Fills a rectangle behind the text that is put there with the same fill.
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
