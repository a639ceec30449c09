#include "host/extension/answers.hpp"

#include <optional>
#include <string_view>
#include <utility>

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

WidgetDeclaration declarationIn(const JsonObject& object) {
  return {.kind = object.text("kind"),
          .displayName = object.text("displayName"),
          .description = object.text("description"),
          .families = object.texts("families")};
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

std::expected<json, std::string> readEntryAnswer(json result) {
  const auto date = base::readObject(result, "result", [](const JsonObject& answer) {
    const auto entry = answer.optionalObject("entry");
    if (!entry) answer.refuse("entry", "missing");
    return instantIn(*entry, "date");
  });
  if (!date) return std::unexpected(date.error());
  return result;
}

std::expected<TimelineAnswer, std::string> readTimeline(json result) {
  auto timeline = base::readObject(result, "result", [](const JsonObject& answer) {
    const auto entries = answer.objects("entries");
    if (entries.empty()) answer.refuse("entries", "empty");
    for (const JsonObject& entry : entries) instantIn(entry, "date");
    const auto policy = answer.optionalObject("policy");
    if (!policy) answer.refuse("policy", "missing");
    if (policy->text("type") != "after") policy->refuse("type", "not a known value");
    return TimelineAnswer{.entries = answer.find("entries")->get<std::vector<json>>(),
                          .reload = instantIn(*policy, "date")};
  });
  if (timeline) timeline->result = std::move(result);
  return timeline;
}

std::expected<protocol::Node, std::string> readView(const json& result) {
  const auto view = result.is_object() ? result.find("view") : result.end();
  if (!result.is_object() || view == result.end()) return std::unexpected("view: missing");
  return protocol::nodeFromJson(*view);
}

}  // namespace host
