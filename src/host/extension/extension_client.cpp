#include "host/extension/extension_client.hpp"

#include <chrono>
#include <utility>

#include <absl/strings/str_cat.h>
#include <malloc.h>

#include "base/json/json_text.hpp"
#include "host/diagnostics/diagnostics.hpp"
#include "host/extension/extension_process.hpp"
#include "host/extension/extension_session.hpp"

namespace host {
namespace {

using Kind = ExtensionFailure::Kind;
using base::toText;
using nlohmann::json;

ExtensionSession::TimePoint after(absl::Duration span) {
  return std::chrono::steady_clock::now() + absl::ToChronoNanoseconds(span);
}

constexpr const char* noParams = "";

std::string paramsOf(const std::string& method, const std::string& kind, protocol::WidgetFamily family,
                     bool isPreview) {
  json params{{"kind", kind}, {"family", nameOf(family)}};
  if (method == "snapshot") params["isPreview"] = isPreview;
  return toText(params);
}

std::expected<Entry, std::string> readEntry(json result) {
  const auto answer = readEntryAnswer(std::move(result));
  if (!answer) return std::unexpected(answer.error());
  return entryFrom(answer->at("entry"));
}

}  // namespace

ExtensionClient::ExtensionClient(ExtensionSettings settings) : settings_(std::move(settings)) {}

ExtensionClient::~ExtensionClient() { stop(); }

ExtensionClient::Answer<json> ExtensionClient::ask(const std::string& method, const std::string& params,
                                                   absl::Duration deadline) {
  // A process that ended between two questions is no failure.
  if (!running()) session_.reset();
  const auto begin = std::chrono::steady_clock::now();
  const auto giveUp = after(deadline);
  if (!session_) {
    if (settings_.verbose) say(Priority::debug, "starting " + settings_.program.string());
    auto environment = settings_.environment;
    if (settings_.verbose) environment.emplace_back("VAMBA_VERBOSE=1");
    auto process = ExtensionProcess::start(settings_.program, environment);
    if (!process) return std::unexpected(ExtensionFailure{Kind::cannotStart, process.error()});
    session_ = std::make_unique<ExtensionSession>(std::move(*process), settings_.interruption, settings_.diagnostics);
  }
  auto answer = session_->ask(method, params, giveUp);
  if (settings_.verbose) {
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
    say(Priority::debug,
        absl::StrCat("\"", method, "\" ", answer ? "was answered" : "failed", " after ", took.count(), " ms"));
  }
  if (!answer && answer.error().kind != Kind::refused) session_.reset();
  return answer;
}

template <typename Result, typename Read>
ExtensionClient::Answer<Result> ExtensionClient::askFor(const std::string& method, const std::string& params,
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
  return askFor<std::vector<WidgetDeclaration>>("widgets", noParams, settings_.requestDeadline, readWidgets);
}

ExtensionClient::Answer<json> ExtensionClient::widgetsJson() {
  return askFor<json>("widgets", noParams, settings_.requestDeadline,
                      [](json result) -> std::expected<json, std::string> {
                        if (auto widgets = readWidgets(result); !widgets) return std::unexpected(widgets.error());
                        return result;
                      });
}

ExtensionClient::Answer<Entry> ExtensionClient::placeholder(const std::string& kind, protocol::WidgetFamily family) {
  const std::string method = "placeholder";
  return askFor<Entry>(method, paramsOf(method, kind, family, false), deadlineOf(method, false), readEntry);
}

ExtensionClient::Answer<Entry> ExtensionClient::snapshot(const std::string& kind, protocol::WidgetFamily family,
                                                         bool isPreview) {
  const std::string method = "snapshot";
  return askFor<Entry>(method, paramsOf(method, kind, family, isPreview), deadlineOf(method, isPreview), readEntry);
}

ExtensionClient::Answer<TimelineAnswer> ExtensionClient::timeline(const std::string& kind,
                                                                  protocol::WidgetFamily family) {
  const std::string method = "timeline";
  return askFor<TimelineAnswer>(method, paramsOf(method, kind, family, false), deadlineOf(method, false), readTimeline);
}

ExtensionClient::Answer<json> ExtensionClient::resultOf(const std::string& method, const std::string& kind,
                                                        protocol::WidgetFamily family, bool isPreview) {
  const auto check = [&](json result) -> std::expected<json, std::string> {
    if (method != "timeline") return readEntryAnswer(std::move(result));
    if (auto timeline = readTimeline(result); !timeline) return std::unexpected(timeline.error());
    return result;
  };
  return askFor<json>(method, paramsOf(method, kind, family, isPreview), deadlineOf(method, isPreview), check);
}

ExtensionClient::Answer<protocol::Node> ExtensionClient::render(const std::string& kind, protocol::WidgetFamily family,
                                                                const std::string& entry) {
  // Put together as text: an entry may be large, and a further copy of it as a tree of values larger by far.
  std::string params = paramsOf("render", kind, family, false);
  params.pop_back();
  params.append(R"(,"entry":)").append(entry).append("}");
  return askFor<protocol::Node>("render", params, settings_.requestDeadline, readView);
}

absl::Duration ExtensionClient::deadlineOf(const std::string& method, bool isPreview) const {
  const bool loads = method == "timeline" || (method == "snapshot" && !isPreview);
  return loads ? settings_.loadDeadline : settings_.requestDeadline;
}

bool ExtensionClient::running() const { return session_ && !session_->ended(); }

void ExtensionClient::stop() {
  if (session_) session_->end(after(settings_.timeToLeave));
  session_.reset();
  // A long answer, read and freed again, leaves free memory that the C library would keep.
  ::malloc_trim(0);
}

}  // namespace host
