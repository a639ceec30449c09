#include "platform/widget_kit/request_server.hpp"

#include <algorithm>

#include "base/json/json_text.hpp"
#include "base/text/instant.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace platform {

using nlohmann::json;
using protocol::json_rpc::ErrorCode;

namespace {

std::unexpected<protocol::json_rpc::Error> badParams(std::string message) {
  return std::unexpected(protocol::json_rpc::makeError(ErrorCode::invalidParams, std::move(message)));
}

/// A parameter's text; empty where it is absent or not a string.
std::string textOf(const json& params, const char* name) {
  const auto it = params.find(name);
  return it != params.end() && it->is_string() ? it->get<std::string>() : std::string{};
}

constexpr int protocolVersion = 1;

json declarationOf(const Widget& widget) {
  const auto configuration = widget.body();
  json families = json::array();
  for (const auto family : configuration->supportedFamilies()) families.push_back(nameOf(family));
  json opens = json::array();
  for (const auto& [kind, name] : widget.opens()) {
    opens.push_back({{kind == OpenTarget::Kind::url ? "url" : "desktopEntry", name}});
  }
  return {{"version", protocolVersion},
          {"kind", configuration->kind()},
          {"displayName", configuration->displayName()},
          {"description", configuration->description()},
          {"families", std::move(families)},
          {"opens", std::move(opens)}};
}

std::string entryResult(const EntryJson& entry) { return R"({"entry":)" + entry + "}"; }

std::string timelineResult(const TimelineJson& timeline) {
  const json policy{{"type", "after"}, {"date", base::formatInstant(timeline.policy.date)}};
  std::string result = R"({"policy":)" + base::toText(policy) + R"(,"entries":[)";
  for (const EntryJson& entry : timeline.entries) {
    if (&entry != &timeline.entries.front()) result += ',';
    result += entry;
  }
  return result += "]}";
}

}  // namespace

/// The widget and the size that a request speaks of.
struct RequestServer::Target {
  SomeWidgetConfiguration configuration;
  protocol::WidgetFamily family;
};

bool RequestServer::serve(std::string_view line) {
  if (line.size() > longestWholeRequest) {
    const std::string cut = base::shortened(line, longestCutString, longestCutRequest);
    if (cut.size() > longestCutRequest) return refuse("the request is longer than 17 MiB");
    return serve(cut);
  }
  auto request = protocol::json_rpc::parseRequest(line);
  if (!request) {
    answer(protocol::json_rpc::toLine(std::move(request.error())));
  } else if (!request->isNotification) {  // a notification gets no answer, so none is computed
    dispatch(std::move(*request));
  }
  return open_;
}

bool RequestServer::refuseLongLine() { return refuse("the line is longer than 64 MiB"); }

bool RequestServer::refuse(std::string sentence) {
  Reply{this, nullptr}(std::unexpected(protocol::json_rpc::makeError(ErrorCode::invalidRequest, std::move(sentence))));
  return open_;
}

void RequestServer::Reply::operator()(Result result) const {
  server->answer(result ? protocol::json_rpc::resultLine(id, *result)
                        : protocol::json_rpc::toLine({id, std::unexpected(std::move(result.error()))}));
}

void RequestServer::answer(std::string line) {
  if (open_ && !writer_.write(std::move(line))) open_ = false;
}

void RequestServer::dispatch(protocol::json_rpc::Request request) {
  const Reply reply{this, std::move(request.id)};
  const std::string& method = request.method;
  const json& params = request.params;
  if (method == "widgets") return reply(widgets());
  if (method != "placeholder" && method != "snapshot" && method != "timeline" && method != "render") {
    return reply(std::unexpected(protocol::json_rpc::makeError(ErrorCode::methodNotFound, "no method " + method)));
  }

  const auto wanted = target(params);
  if (!wanted) return reply(std::unexpected(wanted.error()));
  if (method == "placeholder") return reply(placeholder(*wanted));
  if (method == "snapshot") return snapshot(*wanted, params, reply);
  if (method == "timeline") return timeline(*wanted, reply);
  return reply(render(*wanted, params));
}

RequestServer::Result RequestServer::widgets() const {
  json declarations = json::array();
  for (const auto& widget : bundle_.body()) declarations.push_back(declarationOf(*widget));
  return base::toText(declarations);
}

std::expected<RequestServer::Target, protocol::json_rpc::Error> RequestServer::target(const json& params) const {
  if (!params.is_object()) return badParams("params: not an object");
  const std::string kind = textOf(params, "kind");
  for (const auto& widget : bundle_.body()) {
    auto configuration = widget->body();
    if (configuration->kind() != kind) continue;
    const auto family = protocol::widgetFamilyNamed(textOf(params, "family"));
    const auto offered = configuration->supportedFamilies();
    if (!family || std::ranges::find(offered, *family) == offered.end()) {
      return badParams("family: not one of the widget's families");
    }
    return Target{std::move(configuration), *family};
  }
  return badParams("kind: not one of the extension's widgets");
}

RequestServer::Result RequestServer::placeholder(const Target& target) {
  return entryResult(target.configuration->placeholder({.family = target.family}));
}

void RequestServer::snapshot(const Target& target, const json& params, Reply reply) {
  const auto isPreview = params.find("isPreview");
  if (isPreview == params.end() || !isPreview->is_boolean()) return reply(badParams("isPreview: not true or false"));
  target.configuration->getSnapshot(
      {.family = target.family, .isPreview = isPreview->get<bool>()},
      Completion<EntryJson>([reply = std::move(reply)](const EntryJson& entry) { reply(entryResult(entry)); }));
}

void RequestServer::timeline(const Target& target, Reply reply) {
  target.configuration->getTimeline({.family = target.family},
                                    Completion<TimelineJson>([reply = std::move(reply)](const TimelineJson& timeline) {
                                      reply(timelineResult(timeline));
                                    }));
}

RequestServer::Result RequestServer::render(const Target& target, const json& params) {
  const auto entry = params.find("entry");
  if (entry == params.end()) return badParams("entry: missing");
  const auto view = target.configuration->content(*entry, target.family);
  if (!view) return badParams(view.error());
  return R"({"view":)" + base::toText(protocol::toJson(*view)) + "}";
}

}  // namespace platform
