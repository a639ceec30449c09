#include "render/layout/sentence.hpp"

#include <cmath>

#include "render/layout/stack_room.hpp"

namespace render {

using protocol::HStackNode;
using protocol::Node;
using protocol::TextNode;
using protocol::VStackNode;

const TextNode* sentenceOf(const Node& root) {
  const auto* const column = std::get_if<VStackNode>(&root.kind);
  if (column == nullptr || column->children.size() != 2) return nullptr;
  if (!std::holds_alternative<HStackNode>(column->children[0].kind)) return nullptr;
  return std::get_if<TextNode>(&column->children[1].kind);
}

Node withLargerSentence(Node root) {
  if (sentenceOf(root) == nullptr) return root;
  auto& sentence = std::get<TextNode>(std::get<VStackNode>(root.kind).children[1].kind);
  sentence.weight = sentence.weight.value_or(protocol::FontWeight::regular);
  sentence.font = protocol::TextStyle::headline;
  return root;
}

void centreSentence(const Node& root, Board& board, double unit) {
  const auto* const sentence = sentenceOf(root);
  if (sentence == nullptr || board.items.empty()) return;
  auto* const placed = std::get_if<PlacedText>(&board.items.back());
  if (placed == nullptr || placed->text != sentence) return;
  const auto padding = root.padding.value_or(protocol::EdgeInsets{});
  const double spare = board.size.height - sensibleLength(padding.bottom) - placed->frame.bottom();
  const double down = std::max(0.0, std::floor(spare / 2 / unit) * unit);
  placed->frame.y += down;
  placed->baseline += down;
  const double right = board.size.width - sensibleLength(padding.trailing);
  placed->frame.width = std::max(placed->frame.width, right - placed->frame.x);
  placed->centred = true;
}

}  // namespace render
