// A board on its way from the extension to a painter: which widget, which entry, which view.
#pragma once

#include <expected>
#include <string>

#include <nlohmann/json.hpp>

#include "host/commands/command_line.hpp"
#include "host/extension/extension_client.hpp"
#include "host/status_line/status_line.hpp"

namespace host {

/// Why a command has no result: a sentence for a person and the exit status.
struct CommandFailure {
  int status;
  std::string message;
};

CommandFailure asCommandFailure(const ExtensionFailure& failure);

/// The first widget that comes in the family.
std::expected<WidgetDeclaration, CommandFailure> widgetFor(ExtensionClient& extension, const std::string& family);

/// Whether an entry carries a sentence instead of data.
BoardHolds holdingOf(const nlohmann::json& entry);

/// The entry of a timeline that is shown at `now`: the last whose date has come, else the first.
const nlohmann::json& entryAt(const TimelineAnswer& timeline, absl::Time now);

/// The entry that `--entry` names.
std::expected<nlohmann::json, CommandFailure> entryFor(ExtensionClient& extension, const std::string& kind,
                                                       const CommandLine& line);

}  // namespace host
