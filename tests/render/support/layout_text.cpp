#include "render/support/layout_text.hpp"

#include <array>
#include <cmath>
#include <cstdio>

namespace render::testing {
namespace {

std::string number(double value) {
  const double tenths = std::round(value * 10) / 10;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%g", tenths == 0 ? 0.0 : tenths);
  return text.data();
}

std::string where(const Rect& frame) {
  return number(frame.x) + "," + number(frame.y) + " " + number(frame.width) + "x" + number(frame.height);
}

std::string verbatim(const protocol::TextNode& text) {
  const auto* content = std::get_if<protocol::Verbatim>(&text.content);
  return content == nullptr ? "" : content->text;
}

struct Line {
  std::string operator()(const PlacedText& text) const {
    return "text " + where(text.frame) + " baseline " + number(text.baseline) + " " + verbatim(*text.text);
  }
  std::string operator()(const PlacedRule& rule) const { return "rule " + where(rule.frame); }
  std::string operator()(const PlacedCapsule& capsule) const { return "capsule " + where(capsule.frame); }
};

double charactersOf(const protocol::TextNode& text) {
  const auto content = verbatim(text);
  return static_cast<double>(
      std::count_if(content.begin(), content.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

struct Measures {
  double width, height, baseline;
};

Measures measuresOf(const protocol::TextNode& text) {
  if (text.font == protocol::TextStyle::headline) return {10, 16, 12};
  return {6, 10, 8};
}

const Rect& frameOf(const Placed& item) {
  return std::visit([](const auto& placed) -> const Rect& { return placed.frame; }, item);
}

constexpr double tolerance = 1e-3;

bool overlap(const Rect& one, const Rect& other) {
  return one.x + tolerance < other.right() && other.x + tolerance < one.right() && one.y + tolerance < other.bottom() &&
         other.y + tolerance < one.bottom();
}

bool holds(const Rect& outer, const Rect& inner) {
  return inner.x >= outer.x - tolerance && inner.y >= outer.y - tolerance &&
         inner.right() <= outer.right() + tolerance && inner.bottom() <= outer.bottom() + tolerance;
}

}  // namespace

std::string layoutText(const Board& board) {
  std::string text = "board " + number(board.size.width) + "x" + number(board.size.height);
  if (board.magnification != 1) text += " at " + number(board.magnification * 100) + "%";
  if (!board.whole) text += " cut";
  text += "\n";
  for (const auto& item : board.items) text += std::visit(Line{}, item) + "\n";
  return text;
}

TextExtent PlainMeasurer::natural(const protocol::TextNode& text) {
  const auto measures = measuresOf(text);
  return {{measures.width * charactersOf(text), measures.height}, measures.baseline, 1};
}

std::optional<TextExtent> PlainMeasurer::within(const protocol::TextNode& text, double width, int maxLines) {
  const auto measures = measuresOf(text);
  const auto count = charactersOf(text);
  const double inLine = std::floor(width / measures.width + 1e-9);
  if (count > 0 && inLine < 1) return std::nullopt;
  const double lines = count == 0 ? 1 : std::min(std::ceil(count / inLine), static_cast<double>(maxLines));
  return TextExtent{
      {measures.width * std::min(count, inLine), measures.height * lines}, measures.baseline, static_cast<int>(lines)};
}

std::string layoutFaults(const Board& board) {
  std::string faults;
  const auto complain = [&](const std::string& fault, const Placed& item) {
    faults += fault + ": " + std::visit(Line{}, item) + "\n";
  };
  for (std::size_t i = 0; i < board.items.size(); ++i) {
    const auto& item = board.items[i];
    const auto& frame = frameOf(item);
    if (!holds({0, 0, board.size.width, board.size.height}, frame)) complain("leaves the box", item);
    if (!(frame.width >= 0 && frame.height >= 0)) complain("has no sensible size", item);
    for (std::size_t j = i + 1; j < board.items.size(); ++j) {
      // A capsule may hold what is painted after it.
      const bool behind = std::holds_alternative<PlacedCapsule>(item) && holds(frame, frameOf(board.items[j]));
      if (!behind && overlap(frame, frameOf(board.items[j]))) complain("overlapped", item);
    }
  }
  return faults;
}

}  // namespace render::testing
