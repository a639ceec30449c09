#include "host/extension/answers.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include <absl/strings/ascii.h>

#include "base/json/json_object.hpp"
#include "base/text/instant.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace host {
namespace {

using base::JsonObject;
using nlohmann::json;

absl::Time instantIn(const JsonObject& object, const char* name) {
  return object.parsed(name, base::parseInstant, "not an instant");
}

std::vector<protocol::WidgetFamily> familiesIn(const JsonObject& object) {
  std::vector<protocol::WidgetFamily> families;
  for (const auto& name : object.texts("families")) {
    if (const auto family = protocol::widgetFamilyNamed(name)) families.push_back(*family);
  }
  return families;
}

/// Whether the text is an id of a desktop entry. A slash could lead out of the folders for applications.
bool isEntryId(std::string_view text) {
  constexpr std::size_t longest = 200;
  const auto isAllowed = [](char c) {
    return absl::ascii_isalnum(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '_';
  };
  return !text.empty() && text.size() <= longest && text.front() != '.' && std::ranges::all_of(text, isAllowed);
}

/// Whether the text is an address of http or https with a host, in the characters of RFC 3986.
bool isWebAddress(std::string_view text) {
  constexpr std::size_t longest = 2048;
  constexpr std::string_view others = "-._~:/?#[]@!$&'()*+,;=%";
  const auto isAllowed = [&](char c) {
    return absl::ascii_isalnum(static_cast<unsigned char>(c)) || others.find(c) != std::string_view::npos;
  };
  if (text.size() > longest || !std::ranges::all_of(text, isAllowed)) return false;
  for (const std::string_view scheme : {"https://", "http://"}) {
    if (text.starts_with(scheme))
      return text.substr(scheme.size()).find_first_of("/?#:@") != 0 && text.size() > scheme.size();
  }
  return false;
}

std::vector<OpenTarget> targetsIn(const JsonObject& widget) {
  std::vector<OpenTarget> targets;
  if (widget.find("opens") == nullptr) return targets;
  for (const JsonObject& object : widget.objects("opens")) {
    const auto entry = object.optionalText("desktopEntry");
    const auto url = object.optionalText("url");
    if (entry && isEntryId(*entry)) targets.push_back({OpenTarget::Kind::desktopEntry, *entry});
    if (url && isWebAddress(*url)) targets.push_back({OpenTarget::Kind::url, *url});
  }
  return targets;
}

WidgetDeclaration declarationIn(const JsonObject& object) {
  return {.kind = object.text("kind"),
          .displayName = object.text("displayName"),
          .description = object.text("description"),
          .families = familiesIn(object),
          .opens = targetsIn(object)};
}

/// A view's nodes, or why it has too many of them.
std::expected<std::size_t, std::string> countNodes(const json& view, std::size_t depth) {
  if (depth > deepestNode) return std::unexpected("more than " + std::to_string(deepestNode) + " nodes in one another");
  std::size_t count = 1;
  const auto children = view.is_object() ? view.find("children") : view.end();
  if (!view.is_object() || children == view.end() || !children->is_array()) return count;
  for (const json& child : *children) {
    const auto below = countNodes(child, depth + 1);
    if (!below) return below;
    count += *below;
    if (count > mostNodes) return std::unexpected("more than " + std::to_string(mostNodes) + " nodes");
  }
  return count;
}

/// Cut before the character that passes the limit.
void cut(std::string& text) {
  if (text.size() <= longestText) return;
  std::size_t end = longestText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  text.resize(end);
  text += "…";
}

void cutTexts(protocol::Node& node) {
  if (auto* text = std::get_if<protocol::TextNode>(&node.kind)) {
    if (auto* verbatim = std::get_if<protocol::Verbatim>(&text->content)) cut(verbatim->text);
    if (auto* key = std::get_if<protocol::LocalizedKey>(&text->content)) {
      cut(key->key);
      if (key->value) cut(*key->value);
    }
  } else if (auto* column = std::get_if<protocol::VStackNode>(&node.kind)) {
    for (auto& child : column->children) cutTexts(child);
  } else if (auto* row = std::get_if<protocol::HStackNode>(&node.kind)) {
    for (auto& child : row->children) cutTexts(child);
  }
}

}  // namespace

std::expected<std::vector<WidgetDeclaration>, std::string> readWidgets(const json& result) {
  if (!result.is_array()) return std::unexpected("`widgets` is not an array");
  std::vector<WidgetDeclaration> widgets;
  for (const json& object : result) {
    auto widget = base::readObject(object, "widget", declarationIn);
    if (!widget) return std::unexpected("a widget cannot be read: " + widget.error());
    widgets.push_back(*std::move(widget));
  }
  return widgets;
}

std::expected<WidgetDeclaration, ExtensionFailure> firstWidget(const std::vector<WidgetDeclaration>& widgets,
                                                               std::optional<protocol::WidgetFamily> family) {
  const auto widget = std::ranges::find_if(widgets, [&](const WidgetDeclaration& declared) {
    return !family || std::ranges::find(declared.families, *family) != declared.families.end();
  });
  if (widget != widgets.end()) return *widget;
  return std::unexpected(
      ExtensionFailure{ExtensionFailure::Kind::cannotStart, "the extension offers no widget of this size"});
}

std::expected<json, std::string> readEntryAnswer(json result) {
  const auto date = base::readObject(result, "result", [](const JsonObject& answer) {
    const auto entry = answer.optionalObject("entry");
    if (!entry) answer.refuse("entry", "missing");
    return instantIn(*entry, "date");
  });
  if (!date) return std::unexpected(date.error());
  return result;
}

std::expected<TimelineAnswer, std::string> readTimeline(const json& result) {
  return base::readObject(result, "result", [](const JsonObject& answer) {
    const auto entries = answer.objects("entries");
    if (entries.empty()) answer.refuse("entries", "empty");
    for (const JsonObject& entry : entries) instantIn(entry, "date");
    const auto policy = answer.optionalObject("policy");
    if (!policy) answer.refuse("policy", "missing");
    if (policy->text("type") != "after") policy->refuse("type", "not a known value");
    TimelineAnswer timeline{.entries = {}, .reload = instantIn(*policy, "date")};
    for (const json& entry : *answer.find("entries")) timeline.entries.push_back(entryFrom(entry));
    return timeline;
  });
}

std::expected<protocol::Node, std::string> readView(const json& result) {
  const auto view = result.is_object() ? result.find("view") : result.end();
  if (!result.is_object() || view == result.end()) return std::unexpected("view: missing");
  if (const auto nodes = countNodes(*view, 1); !nodes) return std::unexpected("view: " + nodes.error());
  auto node = protocol::nodeFromJson(*view);
  if (node) cutTexts(*node);
  return node;
}

}  // namespace host
