#include "host/extension/extension_client.hpp"

#include <chrono>
#include <utility>

#include "host/extension/extension_process.hpp"
#include "host/extension/extension_session.hpp"

namespace host {
namespace {

using Kind = ExtensionFailure::Kind;
using nlohmann::json;

ExtensionSession::TimePoint after(absl::Duration span) {
  return std::chrono::steady_clock::now() + absl::ToChronoNanoseconds(span);
}

json placement(const std::string& kind, const std::string& family) { return {{"kind", kind}, {"family", family}}; }

}  // namespace

ExtensionClient::ExtensionClient(ExtensionSettings settings) : settings_(std::move(settings)) {}

ExtensionClient::~ExtensionClient() { stop(); }

ExtensionClient::Answer<json> ExtensionClient::ask(const std::string& method, const json& params,
                                                   absl::Duration deadline) {
  // One that ended while nobody asked it anything did no harm.
  if (!running()) session_.reset();
  const auto giveUp = after(deadline);
  if (!session_) {
    auto process = ExtensionProcess::start(settings_.program);
    if (!process) return std::unexpected(ExtensionFailure{Kind::cannotStart, process.error()});
    session_ = std::make_unique<ExtensionSession>(std::move(*process), settings_.interruption, settings_.diagnostics);
  }
  auto answer = session_->ask(method, params, giveUp);
  if (!answer && answer.error().kind != Kind::refused) session_.reset();
  return answer;
}

template <typename Result, typename Read>
ExtensionClient::Answer<Result> ExtensionClient::askFor(const std::string& method, const json& params,
                                                        absl::Duration deadline, Read read) {
  auto answer = ask(method, params, deadline);
  if (!answer) return std::unexpected(std::move(answer.error()));
  auto result = read(std::move(*answer));
  if (result) return std::move(*result);
  session_.reset();
  return std::unexpected(ExtensionFailure{
      Kind::nonsense, "the extension's answer to \"" + method + "\" makes no sense: " + result.error()});
}

ExtensionClient::Answer<std::vector<WidgetDeclaration>> ExtensionClient::widgets() {
  return askFor<std::vector<WidgetDeclaration>>("widgets", nullptr, settings_.requestDeadline, readWidgets);
}

ExtensionClient::Answer<json> ExtensionClient::widgetsJson() {
  return askFor<json>("widgets", nullptr, settings_.requestDeadline,
                      [](json result) -> std::expected<json, std::string> {
                        if (auto widgets = readWidgets(result); !widgets) return std::unexpected(widgets.error());
                        return result;
                      });
}

ExtensionClient::Answer<json> ExtensionClient::placeholder(const std::string& kind, const std::string& family) {
  return askFor<json>("placeholder", placement(kind, family), settings_.requestDeadline, readEntryAnswer);
}

ExtensionClient::Answer<json> ExtensionClient::snapshot(const std::string& kind, const std::string& family,
                                                        bool isPreview) {
  json params = placement(kind, family);
  params["isPreview"] = isPreview;
  const auto deadline = isPreview ? settings_.requestDeadline : settings_.loadDeadline;
  return askFor<json>("snapshot", params, deadline, readEntryAnswer);
}

ExtensionClient::Answer<TimelineAnswer> ExtensionClient::timeline(const std::string& kind, const std::string& family) {
  return askFor<TimelineAnswer>("timeline", placement(kind, family), settings_.loadDeadline, readTimeline);
}

ExtensionClient::Answer<protocol::Node> ExtensionClient::render(const std::string& kind, const std::string& family,
                                                                const json& entry) {
  json params = placement(kind, family);
  params["entry"] = entry;
  return askFor<protocol::Node>("render", params, settings_.requestDeadline, readView);
}

bool ExtensionClient::running() const { return session_ && !session_->ended(); }

void ExtensionClient::stop() {
  if (!session_) return;
  session_->end(after(settings_.timeToLeave));
  session_.reset();
}

}  // namespace host
