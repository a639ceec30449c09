#include "render/terminal/terminal_canvas.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace render::terminal {
namespace {

using protocol::ForegroundStyle;

/// SGR parameters (ECMA-48) for an ink; empty for plain text. The grey and the blue have a contrast of about 4 or more
/// both on black and on white.
std::string parametersOf(const Ink& ink) {
  std::string parameters;
  const auto add = [&](std::string_view parameter) {
    if (!parameters.empty()) parameters += ';';
    parameters += parameter;
  };
  if (ink.bold) add("1");
  if (ink.fill) {
    switch (*ink.fill) {
      case ForegroundStyle::tint:
        add("38;5;231;48;5;25");
        break;
      case ForegroundStyle::red:
        add("38;5;231;48;5;124");
        break;
      default:
        add("7");
        break;
    }
    return parameters;
  }
  switch (ink.style) {
    case ForegroundStyle::primary:
      break;
    case ForegroundStyle::secondary:
      add("2");
      break;
    case ForegroundStyle::tertiary:
      add("38;5;243");
      break;
    case ForegroundStyle::tint:
      add("38;5;32");
      break;
    case ForegroundStyle::red:
      add("31");
      break;
  }
  return parameters;
}

constexpr std::string_view nonJoiner = "\u200C";

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

/// Writes one row, one SGR sequence for each change of ink.
class RowWriter {
 public:
  RowWriter(std::string& out, Escapes escapes) : out_(out), escapes_(escapes) {}

  void write(std::string_view text, const Ink& ink) {
    if (text.empty()) return;
    auto parameters = escapes_ == Escapes::sgr ? parametersOf(ink) : std::string();
    const bool changes = parameters != current_;
    if (changes) reset();
    // Pieces are separate texts: two halves of a flag, or two emoji with a joiner between them, must not be combined.
    if (last_ != ' ' && text.front() != ' ' && !(isAscii(last_) && isAscii(text.front()))) out_ += nonJoiner;
    if (changes && !parameters.empty()) out_ += "\x1b[" + parameters + "m";
    current_ = std::move(parameters);
    out_ += text;
    last_ = text.back();
  }

  void reset() {
    if (!current_.empty()) out_ += "\x1b[0m";
    current_.clear();
  }

 private:
  std::string& out_;
  Escapes escapes_;
  std::string current_;
  char last_ = ' ';
};

}  // namespace

Canvas::Canvas(int width, int height)
    : width_(std::max(width, 0)), rows_(static_cast<std::size_t>(std::max(height, 0))) {}

void Canvas::put(int x, int y, std::string text, int width, const Ink& ink) {
  if (x < 0 || y < 0 || y >= height() || width < 1 || width > width_ - x) return;
  auto& pieces = rows_[static_cast<std::size_t>(y)].pieces;
  const auto after = std::lower_bound(pieces.begin(), pieces.end(), x,
                                      [](const Piece& piece, int column) { return piece.x < column; });
  if (after != pieces.end() && after->x < x + width) return;
  if (after != pieces.begin() && std::prev(after)->x + std::prev(after)->width > x) return;
  pieces.insert(after, {x, width, std::move(text), ink});
}

void Canvas::fill(int x, int y, int width, int height, ForegroundStyle style) {
  for (int row = std::max(y, 0); row < std::min(y + height, this->height()); ++row) {
    rows_[static_cast<std::size_t>(row)].fills.push_back({x, width, {}, Ink{.fill = style}});
  }
}

std::string Canvas::lines(Escapes escapes, TrailingBlanks blanks) const {
  std::string out;
  for (const Row& row : rows_) {
    RowWriter writer(out, escapes);
    const auto fillAt = [&](int x) {
      Ink ink;
      for (const Piece& fill : row.fills) {
        if (x >= fill.x && x < fill.x + fill.width) ink = fill.ink;
      }
      return ink;
    };
    const auto blank = [&](int from, int to) {
      while (from < to) {
        const Ink ink = fillAt(from);
        int end = from + 1;
        while (end < to && (row.fills.empty() || fillAt(end) == ink)) ++end;
        writer.write(std::string(static_cast<std::size_t>(end - from), ' '), ink);
        from = end;
      }
    };
    int x = 0;
    for (const Piece& piece : row.pieces) {
      blank(x, piece.x);
      writer.write(piece.text, piece.ink);
      x = piece.x + piece.width;
    }
    if (blanks == TrailingBlanks::kept) blank(x, width_);
    writer.reset();
    if (blanks == TrailingBlanks::cut) {
      while (!out.empty() && out.back() == ' ') out.pop_back();
    }
    out += '\n';
  }
  return out;
}

}  // namespace render::terminal
