#include "host/commands/board.hpp"

#include <utility>

#include <absl/time/clock.h>

#include "base/json/json_text.hpp"
#include "host/command_line/outcome.hpp"
#include "host/commands/ask_patiently.hpp"
#include "host/commands/output.hpp"
#include "host/diagnostics/diagnostics.hpp"
#include "host/doctor/environment_findings.hpp"
#include "host/extension/extension_session.hpp"
#include "platform/calendar/device_time_zone.hpp"
#include "protocol/json_rpc/message.hpp"

namespace host {
namespace {

using nlohmann::json;

std::expected<Entry, CommandFailure> orFailure(std::expected<Entry, ExtensionFailure> answer) {
  if (!answer) return std::unexpected(asCommandFailure(answer.error()));
  return *std::move(answer);
}

std::expected<Entry, CommandFailure> entryInFile(const std::string& name) {
  const auto wrong = [](const std::string& message) {
    return std::unexpected(CommandFailure{exit_status::wrongCommandLine, message});
  };
  // As long as an entry may be in an answer of the extension.
  auto text = readAll(name, longestAnswer);
  if (!text) return wrong(text.error());
  const auto entry = base::parseJson(*std::exchange(text, std::string()), protocol::json_rpc::mostValues);
  if (!entry) return wrong((name == "-" ? "standard input" : name) + " does not hold an entry: " + entry.error());
  return entryFrom(*entry);
}

}  // namespace

CommandFailure asCommandFailure(const ExtensionFailure& failure) { return {exit_status::noAnswer, failure.message}; }

std::expected<WidgetDeclaration, CommandFailure> widgetFor(ExtensionClient& extension, protocol::WidgetFamily family) {
  const auto widgets = askPatiently([&] { return extension.widgets(); });
  if (!widgets) return std::unexpected(asCommandFailure(widgets.error()));
  auto widget = firstWidget(*widgets, family);
  if (!widget) return std::unexpected(asCommandFailure(widget.error()));
  return *std::move(widget);
}

std::string inLocalTime(absl::Time instant) {
  return absl::FormatTime("%Y-%m-%d %H:%M:%S", instant, platform::deviceTimeZone());
}

void sayWhatIsInUse(const CommandLine& line) {
  if (!line.verbose) return;
  for (const auto& finding : {languageFinding(), zoneFinding()}) {
    say(Priority::debug, finding.subject + ": " + finding.what);
  }
}

std::expected<Entry, CommandFailure> entryFor(ExtensionClient& extension, const std::string& kind,
                                              const CommandLine& line) {
  if (line.entry == "timeline") {
    auto timeline = askPatiently([&] { return extension.timeline(kind, line.family); });
    if (!timeline) return std::unexpected(asCommandFailure(timeline.error()));
    if (line.verbose) {
      say(Priority::debug, "the extension asks to be asked again at " + inLocalTime(timeline->reload));
    }
    return entryAt(timeline->entries, absl::Now());
  }
  if (line.entry == "placeholder")
    return orFailure(askPatiently([&] { return extension.placeholder(kind, line.family); }));
  if (line.entry == "snapshot" || line.entry == "preview") {
    const bool preview = line.entry == "preview";
    return orFailure(askPatiently([&] { return extension.snapshot(kind, line.family, preview); }));
  }
  return entryInFile(line.entry);
}

}  // namespace host
