#include "host/texts/fewer_rows.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace host {
namespace {

using protocol::LocalizedKey;
using protocol::Node;
using protocol::TextNode;

constexpr const char* moreKey = "i %lld więcej";

LocalizedKey* moreKeyOf(Node& node) {
  auto* const text = std::get_if<TextNode>(&node.kind);
  auto* const key = text == nullptr ? nullptr : std::get_if<LocalizedKey>(&text->content);
  return key != nullptr && key->key == moreKey && key->arguments.size() == 1 ? key : nullptr;
}

bool isDivider(const Node& node) { return std::holds_alternative<protocol::DividerNode>(node.kind); }

void countAsHidden(std::vector<Node>& children, int count) {
  if (!children.empty()) {
    if (auto* const key = moreKeyOf(children.back())) {
      std::int64_t& hidden = key->arguments[0];
      constexpr auto most = std::numeric_limits<std::int64_t>::max();
      hidden = hidden > most - count ? most : hidden + count;
      return;
    }
  }
  children.push_back({.kind = TextNode{.content = LocalizedKey{moreKey, {count}},
                                       .font = protocol::TextStyle::caption2,
                                       .style = protocol::ForegroundStyle::tertiary}});
}

/// Removes each divider that has no row of a list between itself and the next divider or the end.
void dropIdleDividers(std::vector<Node>& children) {
  bool rowBelow = false;
  for (auto node = children.end(); node != children.begin();) {
    --node;
    if (node->identity) {
      rowBelow = true;
    } else if (isDivider(*node) && !std::exchange(rowBelow, false)) {
      node = children.erase(node);
    }
  }
}

}  // namespace

std::optional<Node> withoutLastRows(Node view, int count) {
  auto* const board = std::get_if<protocol::VStackNode>(&view.kind);
  if (board == nullptr) return std::nullopt;
  auto& children = board->children;
  for (int left = count; left > 0; --left) {
    const auto last =
        std::find_if(children.rbegin(), children.rend(), [](const Node& child) { return child.identity.has_value(); });
    if (last == children.rend()) return std::nullopt;
    children.erase(std::next(last).base());
  }
  if (count > 0) {
    countAsHidden(children, count);
    dropIdleDividers(children);
  }
  return view;
}

Node fitted(const Node& view, Language language, absl::FunctionRef<bool(const Node&)> fits) {
  Node shown = localised(view, language);
  for (int count = 1; !fits(shown); ++count) {
    auto fewer = withoutLastRows(view, count);
    if (!fewer) break;
    shown = localised(*std::move(fewer), language);
  }
  return shown;
}

}  // namespace host
