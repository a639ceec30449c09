// The view tree: what a widget shows, as values. A view is a function that returns nodes; builders.hpp makes them,
// node_json.hpp converts them to JSON, and painters lay them out. Trees are compared with ==: a host need not redraw an
// equal one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace protocol {

/// Lengths are in points.
struct EdgeInsets {
  double top = 0;
  double leading = 0;
  double bottom = 0;
  double trailing = 0;
  bool operator==(const EdgeInsets&) const = default;
};

enum class HorizontalAlignment { leading };
enum class VerticalAlignment { center, firstTextBaseline };
enum class TextStyle { headline, caption, caption2 };
enum class FontWeight { regular, medium, semibold };
enum class ForegroundStyle { primary, secondary, tertiary, tint, red };
/// What a text in a row means, for hosts that show the day in another form.
enum class TextRole { time, title, project, day, overdue };
enum class CapsuleCorners { continuous };
enum class ContainerBackground { background };

/// Text that is shown as it stands.
struct Verbatim {
  std::string text;
  bool operator==(const Verbatim&) const = default;
};

/// A key of the host's own localised-text mechanism; each "%lld" in its text takes the next argument.
struct LocalizedKey {
  std::string key;
  std::vector<std::int64_t> arguments;
  std::optional<std::string> value;  ///< the whole text in the sender's language, for hosts that do not know the key
  bool operator==(const LocalizedKey&) const = default;
};

struct TextNode {
  std::variant<Verbatim, LocalizedKey> content;
  TextStyle font = TextStyle::caption;
  std::optional<FontWeight> weight;  ///< absent: the text style's own
  bool monospacedDigits = false;     ///< digits of equal advance
  ForegroundStyle style = ForegroundStyle::primary;
  std::optional<int> lineLimit;
  std::optional<TextRole> role;
  bool operator==(const TextNode&) const = default;
};

/// Takes up the space that its siblings leave.
struct SpacerNode {
  double minLength = 0;
  bool operator==(const SpacerNode&) const = default;
};

/// A thin rule across the stack.
struct DividerNode {
  bool operator==(const DividerNode&) const = default;
};

struct Node;

struct VStackNode {
  HorizontalAlignment alignment = HorizontalAlignment::leading;
  std::optional<double> spacing;  ///< absent: the toolkit's default
  std::vector<Node> children;
  bool operator==(const VStackNode&) const = default;
};

struct HStackNode {
  VerticalAlignment alignment = VerticalAlignment::center;
  std::optional<double> spacing;  ///< absent: the toolkit's default
  std::vector<Node> children;
  bool operator==(const HStackNode&) const = default;
};

/// A capsule behind the padded node.
struct CapsuleBackground {
  CapsuleCorners corners = CapsuleCorners::continuous;
  ForegroundStyle fill = ForegroundStyle::tint;
  double opacity = 1;
  bool operator==(const CapsuleBackground&) const = default;
};

struct Node {
  std::variant<VStackNode, HStackNode, TextNode, SpacerNode, DividerNode> kind;
  std::optional<std::string> identity;  ///< within a keyed list
  std::optional<EdgeInsets> padding;
  std::optional<CapsuleBackground> background;
  std::optional<ContainerBackground> containerBackground;  ///< on the root
  bool operator==(const Node&) const = default;
};

}  // namespace protocol
