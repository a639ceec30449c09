#include "protocol/view_tree/node_json.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

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
  // Points are mostly whole: 6, not 6.0.
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

/// What is wrong with a field; thrown within this file only, turned into the result at its border.
struct FormError {
  std::string message;
};

[[noreturn]] void fail(const std::string& path, const char* fault) { throw FormError{path + ": " + fault}; }

/// One object of the form being read, with the path that leads to it.
class Reader {
 public:
  Reader(const json& object, std::string path) : object_(object), path_(std::move(path)) {
    if (!object_.is_object()) fail(path_.empty() ? "view" : path_, "not an object");
  }

  std::string path(const char* name) const { return path_.empty() ? name : path_ + "." + name; }

  /// The field's value; null where it is absent or null.
  const json* find(const char* name) const {
    const auto it = object_.find(name);
    return it == object_.end() || it->is_null() ? nullptr : &*it;
  }

  std::optional<double> length(const char* name) const {
    const json* value = find(name);
    if (value == nullptr) return std::nullopt;
    if (!value->is_number() || !std::isfinite(value->get<double>())) fail(path(name), "not a number");
    return value->get<double>();
  }

  std::optional<std::string> text(const char* name) const {
    const json* value = find(name);
    if (value == nullptr) return std::nullopt;
    if (!value->is_string()) fail(path(name), "not a text");
    return value->get<std::string>();
  }

  template <typename Enum>
  std::optional<Enum> choice(const char* name) const {
    const auto word = text(name);
    if (!word) return std::nullopt;
    constexpr auto words = names<Enum>();
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i] == *word) return static_cast<Enum>(i);
    }
    fail(path(name), "not a known value");
  }

  /// None also where the word is not known: an extension may have more of them.
  std::optional<TextRole> role() const {
    const json* value = find("role");
    if (value == nullptr || !value->is_string()) return std::nullopt;
    constexpr auto words = names<TextRole>();
    const auto found = std::ranges::find(words, value->get_ref<const std::string&>());
    if (found == words.end()) return std::nullopt;
    return static_cast<TextRole>(found - words.begin());
  }

  bool flag(const char* name) const {
    const json* value = find(name);
    if (value == nullptr) return false;
    if (!value->is_boolean()) fail(path(name), "not true or false");
    return value->get<bool>();
  }

  std::vector<Node> children() const;
  TextNode textNode() const;
  Node node() const;

 private:
  const json& object_;
  std::string path_;
};

std::int64_t integer(const json& value, const std::string& path) {
  const bool fits =
      value.is_number_unsigned()
          ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
          : value.is_number_integer();
  if (!fits) fail(path, "not an integer of 64 bits");
  return value.get<std::int64_t>();
}

std::vector<Node> Reader::children() const {
  const json* array = find("children");
  if (array == nullptr || !array->is_array()) fail(path("children"), "not an array");
  std::vector<Node> nodes;
  nodes.reserve(array->size());
  for (std::size_t i = 0; i < array->size(); ++i) {
    nodes.push_back(Reader((*array)[i], path("children") + "[" + std::to_string(i) + "]").node());
  }
  return nodes;
}

TextNode Reader::textNode() const {
  TextNode result;
  if (auto verbatim = text("text")) {
    result.content = Verbatim{std::move(*verbatim)};
  } else if (auto key = text("key")) {
    LocalizedKey localized{std::move(*key), {}};
    if (const json* arguments = find("arguments")) {
      if (!arguments->is_array()) fail(path("arguments"), "not an array");
      for (const auto& argument : *arguments) localized.arguments.push_back(integer(argument, path("arguments")));
    }
    result.content = std::move(localized);
  } else {
    fail(path("text"), "neither text nor key");
  }
  result.font = choice<TextStyle>("font").value_or(TextStyle::caption);
  result.weight = choice<FontWeight>("weight");
  result.monospacedDigits = flag("monospacedDigits");
  result.style = choice<ForegroundStyle>("style").value_or(ForegroundStyle::primary);
  if (const json* limit = find("lineLimit")) {
    const auto lines = integer(*limit, path("lineLimit"));
    if (lines < 1 || lines > std::numeric_limits<int>::max()) fail(path("lineLimit"), "not a number of lines");
    result.lineLimit = static_cast<int>(lines);
  }
  result.role = role();
  return result;
}

Node Reader::node() const {
  const auto type = text("type");
  Node node;
  if (type == "vstack") {
    const auto alignment = choice<HorizontalAlignment>("alignment").value_or(HorizontalAlignment::leading);
    node.kind = VStackNode{alignment, length("spacing"), children()};
  } else if (type == "hstack") {
    const auto alignment = choice<VerticalAlignment>("alignment").value_or(VerticalAlignment::center);
    node.kind = HStackNode{alignment, length("spacing"), children()};
  } else if (type == "text") {
    node.kind = textNode();
  } else if (type == "spacer") {
    node.kind = SpacerNode{length("minLength").value_or(0)};
  } else if (type == "divider") {
    node.kind = DividerNode{};
  } else {
    fail(path("type"), "not a known node");
  }
  node.identity = text("id");
  if (const json* insets = find("padding")) {
    const Reader edges(*insets, path("padding"));
    node.padding = EdgeInsets{edges.length("top").value_or(0), edges.length("leading").value_or(0),
                              edges.length("bottom").value_or(0), edges.length("trailing").value_or(0)};
  }
  if (const json* background = find("background")) {
    const Reader capsule(*background, path("background"));
    if (capsule.text("shape") != "capsule") fail(capsule.path("shape"), "not a known value");
    node.background = CapsuleBackground{capsule.choice<CapsuleCorners>("corners").value_or(CapsuleCorners::continuous),
                                        capsule.choice<ForegroundStyle>("fill").value_or(ForegroundStyle::tint),
                                        capsule.length("opacity").value_or(1)};
  }
  node.containerBackground = choice<ContainerBackground>("containerBackground");
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

std::expected<Node, std::string> nodeFromJson(const json& value) {
  try {
    return Reader(value, "").node();
  } catch (const FormError& error) {
    return std::unexpected(error.message);
  }
}

}  // namespace protocol
