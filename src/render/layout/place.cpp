#include "render/layout/place.hpp"

namespace render {
namespace {

void placeAt(const Measured& measured, double x, double y, std::vector<Placed>& items) {
  if (!measured.present) return;
  const auto& node = *measured.node;
  const auto& padding = measured.padding;
  const Rect frame{x, y, measured.size.width, measured.size.height};
  const Rect content{x + padding.leading, y + padding.top,
                     std::max(0.0, frame.width - padding.leading - padding.trailing),
                     std::max(0.0, frame.height - padding.top - padding.bottom)};
  if (node.background) items.push_back(PlacedCapsule{&*node.background, frame});

  if (const auto* text = std::get_if<protocol::TextNode>(&node.kind)) {
    items.push_back(
        PlacedText{text, content, y + measured.firstBaseline, measured.textWidthLimit, measured.textMaxLines});
  } else if (std::holds_alternative<protocol::DividerNode>(node.kind)) {
    if (content.width > 0 && content.height > 0) items.push_back(PlacedRule{content});
  } else if (std::holds_alternative<protocol::VStackNode>(node.kind)) {
    double top = content.y;
    for (const auto& child : measured.children) {
      top += child.gap;
      placeAt(child, content.x + child.crossOffset, top, items);
      top += child.size.height;
    }
  } else if (std::holds_alternative<protocol::HStackNode>(node.kind)) {
    double left = content.x;
    for (const auto& child : measured.children) {
      left += child.gap;
      placeAt(child, left, content.y + child.crossOffset, items);
      left += child.size.width;
    }
  }
}

}  // namespace

std::vector<Placed> place(const Measured& measured) {
  std::vector<Placed> items;
  placeAt(measured, 0, 0, items);
  return items;
}

}  // namespace render
