#include "protocol/view_tree/node_json.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "base/json/json_object.hpp"

namespace protocol {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

/// An enumeration's words in the JSON form, in the order of its values.
template <typename Enum>
constexpr auto names() {
  if constexpr (std::is_same_v<Enum, HorizontalAlignment>) return std::array<std::string_view, 1>{"leading"};
  if constexpr (std::is_same_v<Enum, VerticalAlignment>)
    return std::array<std::string_view, 2>{"center", "firstTextBaseline"};
  if constexpr (std::is_same_v<Enum, TextStyle>)
    return std::array<std::string_view, 3>{"headline", "caption", "caption2"};
  if constexpr (std::is_same_v<Enum, FontWeight>)
    return std::array<std::string_view, 3>{"regular", "medium", "semibold"};
  if constexpr (std::is_same_v<Enum, ForegroundStyle>)
    return std::array<std::string_view, 5>{"primary", "secondary", "tertiary", "tint", "red"};
  if constexpr (std::is_same_v<Enum, TextRole>)
    return std::array<std::string_view, 5>{"time", "title", "project", "day", "overdue"};
  if constexpr (std::is_same_v<Enum, CapsuleCorners>) return std::array<std::string_view, 1>{"continuous"};
  if constexpr (std::is_same_v<Enum, ContainerBackground>) return std::array<std::string_view, 1>{"background"};
}

template <typename Enum>
std::string nameOf(Enum value) {
  return std::string(names<Enum>()[static_cast<std::size_t>(value)]);
}

ordered_json number(double value) {
  // Whole numbers of points are written as 6, not 6.0.
  if (std::trunc(value) == value && std::abs(value) < 1e15) return static_cast<std::int64_t>(value);
  return value;
}

ordered_json childrenOf(const std::vector<Node>& children) {
  auto array = ordered_json::array();
  for (const auto& child : children) array.push_back(toJson(child));
  return array;
}

struct Writer {
  ordered_json& out;

  template <typename Stack>
  void stack(const char* type, const Stack& node) const {
    out["type"] = type;
    out["alignment"] = nameOf(node.alignment);
    if (node.spacing) out["spacing"] = number(*node.spacing);
    out["children"] = childrenOf(node.children);
  }

  void operator()(const VStackNode& node) const { stack("vstack", node); }
  void operator()(const HStackNode& node) const { stack("hstack", node); }

  void operator()(const TextNode& node) const {
    out["type"] = "text";
    if (const auto* key = std::get_if<LocalizedKey>(&node.content)) {
      out["key"] = key->key;
      out["arguments"] = key->arguments;
      if (key->value) out["value"] = *key->value;
    } else {
      out["text"] = std::get<Verbatim>(node.content).text;
    }
    out["font"] = nameOf(node.font);
    if (node.weight) out["weight"] = nameOf(*node.weight);
    if (node.monospacedDigits) out["monospacedDigits"] = true;
    if (node.style != ForegroundStyle::primary) out["style"] = nameOf(node.style);
    if (node.lineLimit) out["lineLimit"] = *node.lineLimit;
    if (node.role) out["role"] = nameOf(*node.role);
  }

  void operator()(const SpacerNode& node) const {
    out["type"] = "spacer";
    out["minLength"] = number(node.minLength);
  }

  void operator()(const DividerNode&) const { out["type"] = "divider"; }
};

// Reading.

using base::JsonObject;

template <typename Enum>
std::optional<Enum> choice(const JsonObject& object, const char* name) {
  const auto word = object.optionalText(name);
  if (!word) return std::nullopt;
  constexpr auto words = names<Enum>();
  const auto found = std::ranges::find(words, *word);
  if (found == words.end()) object.refuse(name, "not a known value");
  return static_cast<Enum>(found - words.begin());
}

Node nodeOf(const JsonObject& object);

/// Absent for an unknown word too: a newer extension may send more of them.
std::optional<TextRole> roleOf(const JsonObject& object) {
  const json* word = object.find("role");
  if (word == nullptr || !word->is_string()) return std::nullopt;
  constexpr auto words = names<TextRole>();
  const auto found = std::ranges::find(words, word->get_ref<const std::string&>());
  if (found == words.end()) return std::nullopt;
  return static_cast<TextRole>(found - words.begin());
}

std::vector<Node> childrenOf(const JsonObject& object) {
  std::vector<Node> nodes;
  for (const JsonObject& child : object.objects("children")) nodes.push_back(nodeOf(child));
  return nodes;
}

std::variant<Verbatim, LocalizedKey> contentOf(const JsonObject& object) {
  if (auto verbatim = object.optionalText("text")) return Verbatim{*std::move(verbatim)};
  auto key = object.optionalText("key");
  if (!key) object.refuse("text", "neither text nor key");
  LocalizedKey localized{*std::move(key), {}, object.optionalText("value")};
  if (object.find("arguments") != nullptr) localized.arguments = object.integers("arguments");
  return localized;
}

TextNode textNodeOf(const JsonObject& object) {
  TextNode node{.content = contentOf(object),
                .font = choice<TextStyle>(object, "font").value_or(TextStyle::caption),
                .weight = choice<FontWeight>(object, "weight"),
                .monospacedDigits = object.optionalFlag("monospacedDigits").value_or(false),
                .style = choice<ForegroundStyle>(object, "style").value_or(ForegroundStyle::primary)};
  if (const auto lines = object.optionalInteger("lineLimit")) {
    if (*lines < 1 || !std::in_range<int>(*lines)) object.refuse("lineLimit", "not a number of lines");
    node.lineLimit = static_cast<int>(*lines);
  }
  node.role = roleOf(object);
  return node;
}

EdgeInsets insetsOf(const JsonObject& object) {
  return {.top = object.optionalNumber("top").value_or(0),
          .leading = object.optionalNumber("leading").value_or(0),
          .bottom = object.optionalNumber("bottom").value_or(0),
          .trailing = object.optionalNumber("trailing").value_or(0)};
}

CapsuleBackground capsuleOf(const JsonObject& object) {
  if (object.optionalText("shape") != "capsule") object.refuse("shape", "not a known value");
  return {.corners = choice<CapsuleCorners>(object, "corners").value_or(CapsuleCorners::continuous),
          .fill = choice<ForegroundStyle>(object, "fill").value_or(ForegroundStyle::tint),
          .opacity = object.optionalNumber("opacity").value_or(1)};
}

Node nodeOf(const JsonObject& object) {
  const auto type = object.optionalText("type");
  Node node;
  if (type == "vstack") {
    const auto alignment = choice<HorizontalAlignment>(object, "alignment").value_or(HorizontalAlignment::leading);
    node.kind = VStackNode{alignment, object.optionalNumber("spacing"), childrenOf(object)};
  } else if (type == "hstack") {
    const auto alignment = choice<VerticalAlignment>(object, "alignment").value_or(VerticalAlignment::center);
    node.kind = HStackNode{alignment, object.optionalNumber("spacing"), childrenOf(object)};
  } else if (type == "text") {
    node.kind = textNodeOf(object);
  } else if (type == "spacer") {
    node.kind = SpacerNode{object.optionalNumber("minLength").value_or(0)};
  } else if (type == "divider") {
    node.kind = DividerNode{};
  } else {
    object.refuse("type", "not a known node");
  }
  node.identity = object.optionalText("id");
  if (const auto insets = object.optionalObject("padding")) node.padding = insetsOf(*insets);
  if (const auto background = object.optionalObject("background")) node.background = capsuleOf(*background);
  node.containerBackground = choice<ContainerBackground>(object, "containerBackground");
  return node;
}

}  // namespace

ordered_json toJson(const Node& node) {
  ordered_json out = ordered_json::object();
  std::visit(Writer{out}, node.kind);
  if (node.identity) out["id"] = *node.identity;
  if (const auto& insets = node.padding) {
    out["padding"] = {{"top", number(insets->top)},
                      {"leading", number(insets->leading)},
                      {"bottom", number(insets->bottom)},
                      {"trailing", number(insets->trailing)}};
  }
  if (const auto& capsule = node.background) {
    out["background"] = {{"shape", "capsule"},
                         {"corners", nameOf(capsule->corners)},
                         {"fill", nameOf(capsule->fill)},
                         {"opacity", number(capsule->opacity)}};
  }
  if (node.containerBackground) out["containerBackground"] = nameOf(*node.containerBackground);
  return out;
}

std::expected<Node, std::string> nodeFromJson(const json& value) { return base::readObject(value, "view", nodeOf); }

}  // namespace protocol
