// A view tree as indented text, one node a line, for tests that a person reviews by reading.
#pragma once

#include <sstream>
#include <string>

#include "protocol/view_tree/node.hpp"

namespace support {

namespace tree_text {

inline std::string number(double value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

struct Line {
  std::string operator()(const protocol::VStackNode& node) const {
    return "vstack leading" + (node.spacing ? " " + number(*node.spacing) : "");
  }
  std::string operator()(const protocol::HStackNode& node) const {
    const bool centred = node.alignment == protocol::VerticalAlignment::center;
    return std::string("hstack ") + (centred ? "center" : "baseline") +
           (node.spacing ? " " + number(*node.spacing) : "");
  }
  std::string operator()(const protocol::TextNode& node) const {
    using namespace protocol;
    std::string line;
    if (const auto* key = std::get_if<LocalizedKey>(&node.content)) {
      line = "key '" + key->key + "'";
      for (const auto argument : key->arguments) line += " " + std::to_string(argument);
    } else {
      line = "'" + std::get<Verbatim>(node.content).text + "'";
    }
    constexpr const char* fonts[] = {" headline", " caption", " caption2"};
    constexpr const char* weights[] = {" regular", " medium", " semibold"};
    constexpr const char* styles[] = {"", " secondary", " tertiary", " tint", " red"};
    line += fonts[static_cast<int>(node.font)];
    if (node.weight) line += weights[static_cast<int>(*node.weight)];
    if (node.monospacedDigits) line += " digits";
    line += styles[static_cast<int>(node.style)];
    if (node.lineLimit) line += " limit " + std::to_string(*node.lineLimit);
    return line;
  }
  std::string operator()(const protocol::SpacerNode& node) const { return "spacer " + number(node.minLength); }
  std::string operator()(const protocol::DividerNode&) const { return "divider"; }
};

inline void append(std::string& out, const protocol::Node& node, int depth) {
  out += std::string(static_cast<std::size_t>(depth) * 2, ' ') + std::visit(Line{}, node.kind);
  if (const auto& edges = node.padding) {
    out += " padding " + number(edges->top) + " " + number(edges->leading) + " " + number(edges->bottom) + " " +
           number(edges->trailing);
  }
  if (node.background) {
    const bool tint = node.background->fill == protocol::ForegroundStyle::tint;
    out += std::string(" capsule ") + (tint ? "tint " : "other ") + number(node.background->opacity);
  }
  if (node.containerBackground) out += " background";
  out += "\n";
  const std::vector<protocol::Node>* children = nullptr;
  if (const auto* vstack = std::get_if<protocol::VStackNode>(&node.kind)) children = &vstack->children;
  if (const auto* hstack = std::get_if<protocol::HStackNode>(&node.kind)) children = &hstack->children;
  if (children == nullptr) return;
  for (const auto& child : *children) append(out, child, depth + 1);
}

}  // namespace tree_text

inline std::string asText(const protocol::Node& root) {
  std::string out;
  tree_text::append(out, root, 0);
  return out;
}

}  // namespace support
