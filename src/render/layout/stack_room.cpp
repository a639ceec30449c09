#include "render/layout/stack_room.hpp"

#include <algorithm>

namespace render {
namespace {

using namespace protocol;

constexpr double longestLength = 1e6;
constexpr double ordinaryGap = 8;
constexpr int deepestNesting = 64;

double naturalWidthAt(const Node& node, TextMeasurer& measurer, int depth) {
  if (depth == deepestNesting) return 0;
  double width = 0;
  if (const auto* text = std::get_if<TextNode>(&node.kind)) {
    width = measurer.natural(*text).size.width;
  } else if (const auto* column = std::get_if<VStackNode>(&node.kind)) {
    for (const auto& child : column->children) {
      // Length along the column is height, which asks for no width.
      if (!std::holds_alternative<SpacerNode>(child.kind)) {
        width = std::max(width, naturalWidthAt(child, measurer, depth + 1));
      }
    }
  } else if (const auto* row = std::get_if<HStackNode>(&node.kind)) {
    for (std::size_t i = 0; i < row->children.size(); ++i) {
      if (i > 0) width += gapBetween(row->spacing, row->children[i - 1], row->children[i]);
      width += naturalWidthAt(row->children[i], measurer, depth + 1);
    }
  } else if (const auto* spacer = std::get_if<SpacerNode>(&node.kind)) {
    width = sensibleLength(spacer->minLength);
  } else {
    width = 1;
  }
  if (node.padding) width += sensibleLength(node.padding->leading) + sensibleLength(node.padding->trailing);
  return width;
}

bool grows(const Node& node, bool sideways, int depth) {
  if (depth == deepestNesting) return false;
  const auto any = [&](const auto& children, auto itself) {
    return std::any_of(children.begin(), children.end(),
                       [&](const Node& child) { return itself(child) || grows(child, sideways, depth + 1); });
  };
  if (const auto* column = std::get_if<VStackNode>(&node.kind)) {
    return any(column->children, [&](const Node& child) {
      return sideways ? std::holds_alternative<DividerNode>(child.kind)
                      : std::holds_alternative<SpacerNode>(child.kind);
    });
  }
  if (const auto* row = std::get_if<HStackNode>(&node.kind)) {
    return any(row->children,
               [&](const Node& child) { return sideways && std::holds_alternative<SpacerNode>(child.kind); });
  }
  return false;
}

}  // namespace

double sensibleLength(double length) { return length > 0 ? std::min(length, longestLength) : 0; }

double naturalWidth(const Node& node, TextMeasurer& measurer) { return naturalWidthAt(node, measurer, 0); }

bool growsSideways(const Node& node) { return std::holds_alternative<SpacerNode>(node.kind) || grows(node, true, 0); }

bool growsDown(const Node& node) { return std::holds_alternative<SpacerNode>(node.kind) || grows(node, false, 0); }

bool separates(const Node& node) {
  return std::holds_alternative<SpacerNode>(node.kind) || std::holds_alternative<DividerNode>(node.kind);
}

double gapBetween(const std::optional<double>& spacing, const Node& before, const Node& after) {
  if (spacing) return sensibleLength(*spacing);
  const bool lines = std::holds_alternative<TextNode>(before.kind) && std::holds_alternative<TextNode>(after.kind);
  return lines ? 0 : ordinaryGap;
}

}  // namespace render
