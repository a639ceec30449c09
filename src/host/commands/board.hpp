// A board on its way from the extension to a painter: which widget, which entry, which view.
#pragma once

#include <expected>
#include <string>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"
#include "host/extension/extension_client.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace host {

CommandFailure asCommandFailure(const ExtensionFailure& failure);

/// The first widget that comes in the family.
std::expected<WidgetDeclaration, CommandFailure> widgetFor(ExtensionClient& extension, protocol::WidgetFamily family);

/// As the clock of the device's zone shows it: "2026-11-23 07:45:00".
std::string inLocalTime(absl::Time instant);

/// With `--verbose`: the language and the zone in use, on standard error.
void sayWhatIsInUse(const CommandLine& line);

/// The entry that `--entry` names.
std::expected<Entry, CommandFailure> entryFor(ExtensionClient& extension, const std::string& kind,
                                              const CommandLine& line);

}  // namespace host
