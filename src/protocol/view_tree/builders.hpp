// How view code writes a tree: functions that return nodes, children in braces in visual order, modifiers after what
// they modify.
//
//   VStack({.alignment = HorizontalAlignment::leading, .spacing = 6}, {
//       Text(key("Vamba")).font(TextStyle::headline),
//       when(count >= 1, [&] { return badge(count); }),
//       forEach(rows, row),
//   })
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "protocol/view_tree/node.hpp"

namespace protocol {

/// A node under construction. Modifiers consume it, so a tree is built by moving, never by copying.
class View {
 public:
  explicit View(Node node) : node_(std::move(node)) {}
  operator Node() && { return std::move(node_); }

  View&& padding(double everyEdge) &&;
  View&& padding(EdgeInsets insets) &&;
  View&& background(CapsuleBackground capsule) &&;
  View&& containerBackground(ContainerBackground background) &&;
  View&& id(std::string identity) &&;

 protected:
  Node node_;
};

/// Text shown as it stands, or a key for the host's localised texts; its own modifiers come before those of View.
class Text final : public View {
 public:
  explicit Text(std::string verbatim) : View({.kind = TextNode{.content = Verbatim{std::move(verbatim)}}}) {}
  explicit Text(LocalizedKey key) : View({.kind = TextNode{.content = std::move(key)}}) {}

  Text&& font(TextStyle style) &&;
  Text&& weight(FontWeight weight) &&;
  Text&& monospacedDigit() &&;
  Text&& foregroundStyle(ForegroundStyle style) &&;
  Text&& lineLimit(int lines) &&;
  Text&& role(TextRole role) &&;

 private:
  TextNode& text() { return std::get<TextNode>(node_.kind); }
};

inline LocalizedKey key(std::string text) { return {std::move(text), {}, {}}; }
inline LocalizedKey key(std::string format, std::int64_t argument) { return {std::move(format), {argument}, {}}; }

inline View Spacer(double minLength = 0) { return View({.kind = SpacerNode{minLength}}); }
inline View Divider() { return View({.kind = DividerNode{}}); }

/// Zero or more children of a stack.
struct Views {
  std::vector<Node> nodes;

  Views() = default;
  Views(View view) { nodes.push_back(std::move(view)); }
  explicit Views(std::vector<Node> several) : nodes(std::move(several)) {}
};

/// What `content` returns where the condition holds, else nothing.
template <typename Content>
Views when(bool condition, Content content) {
  return condition ? Views(content()) : Views();
}

/// A list keyed by the elements' `id`: one view for each element, in order.
template <typename Element, typename Content>
Views forEach(std::span<const Element> elements, Content content) {
  std::vector<Node> nodes;
  nodes.reserve(elements.size());
  for (const auto& element : elements) nodes.push_back(View(content(element)).id(element.id.text()));
  return Views(std::move(nodes));
}

/// A stack's children, written in braces. They are moved, which std::initializer_list does not allow.
struct Children {
  std::vector<Node> nodes;

  template <typename... Each>
    requires(std::convertible_to<Each, Views> && ...)
  Children(Each&&... each) {
    (append(Views(std::forward<Each>(each))), ...);
  }

 private:
  void append(Views views) {
    for (auto& node : views.nodes) nodes.push_back(std::move(node));
  }
};

template <typename Alignment>
struct StackStyle {
  Alignment alignment{};
  std::optional<double> spacing;
};

View VStack(StackStyle<HorizontalAlignment> style, Children children);
View HStack(StackStyle<VerticalAlignment> style, Children children);

}  // namespace protocol
