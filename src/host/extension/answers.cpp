#include "host/extension/answers.hpp"

#include <optional>
#include <string_view>
#include <utility>

#include "platform/calendar/instant.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace host {
namespace {

using nlohmann::json;

const json* field(const json& object, const char* name) {
  const auto found = object.is_object() ? object.find(name) : object.end();
  return object.is_object() && found != object.end() ? &*found : nullptr;
}

std::optional<std::string> textIn(const json& object, const char* name) {
  const json* const value = field(object, name);
  if (value == nullptr || !value->is_string()) return std::nullopt;
  return value->get<std::string>();
}

std::optional<absl::Time> instantIn(const json& object, const char* name) {
  const auto text = textIn(object, name);
  const auto instant = text ? platform::parseInstant(*text) : std::nullopt;
  // RFC 3339 has no form for the ends of time; a date that overflowed into them can't be waited for.
  if (!instant || *instant == absl::InfiniteFuture() || *instant == absl::InfinitePast()) return std::nullopt;
  return instant;
}

bool isEntry(const json& value) { return instantIn(value, "date").has_value(); }

std::optional<WidgetDeclaration> declarationIn(const json& object) {
  auto kind = textIn(object, "kind");
  auto displayName = textIn(object, "displayName");
  auto description = textIn(object, "description");
  const json* const families = field(object, "families");
  if (!kind || !displayName || !description || families == nullptr || !families->is_array()) return std::nullopt;
  WidgetDeclaration widget{
      .kind = std::move(*kind), .displayName = std::move(*displayName), .description = std::move(*description)};
  for (const json& family : *families) {
    if (!family.is_string()) return std::nullopt;
    widget.families.push_back(family.get<std::string>());
  }
  return widget;
}

}  // namespace

std::expected<std::vector<WidgetDeclaration>, std::string> readWidgets(const json& result) {
  if (!result.is_array()) return std::unexpected("the widgets are no array");
  std::vector<WidgetDeclaration> widgets;
  for (const json& object : result) {
    auto widget = declarationIn(object);
    if (!widget) return std::unexpected("a widget lacks \"kind\", \"displayName\", \"description\" or \"families\"");
    widgets.push_back(std::move(*widget));
  }
  return widgets;
}

std::expected<json, std::string> readEntryAnswer(json result) {
  const json* const entry = field(result, "entry");
  if (entry == nullptr || !isEntry(*entry)) return std::unexpected("\"entry\" is no entry with a \"date\"");
  return result;
}

std::expected<TimelineAnswer, std::string> readTimeline(json result) {
  const json* const entries = field(result, "entries");
  if (entries == nullptr || !entries->is_array() || entries->empty()) {
    return std::unexpected("\"entries\" holds no entry");
  }
  for (const json& entry : *entries) {
    if (!isEntry(entry)) return std::unexpected("\"entries\" holds an entry without a \"date\"");
  }
  const json* const policy = field(result, "policy");
  const auto reload = policy == nullptr ? std::nullopt : instantIn(*policy, "date");
  if (!reload || textIn(*policy, "type") != "after")
    return std::unexpected("\"policy\" tells no \"date\" to ask after");
  TimelineAnswer answer{.entries = entries->get<std::vector<json>>(), .reload = *reload};
  answer.result = std::move(result);
  return answer;
}

std::expected<protocol::Node, std::string> readView(const json& result) {
  const json* const view = field(result, "view");
  if (view == nullptr) return std::unexpected("\"view\" is missing");
  auto node = protocol::nodeFromJson(*view);
  if (!node) return std::unexpected("\"view\" is no view: " + node.error());
  return node;
}

}  // namespace host
