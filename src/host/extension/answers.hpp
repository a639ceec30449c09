// Results of the protocol's methods read into what a host needs of them. Anything else in them is passed over: an entry
// is opaque but for its date.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

#include "host/extension/entry.hpp"
#include "host/extension/extension_failure.hpp"
#include "protocol/view_tree/node.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace host {

/// What a click on a widget opens.
struct OpenTarget {
  enum class Kind { desktopEntry, url };
  Kind kind = Kind::url;
  std::string name;  ///< the id of a desktop entry without its suffix, or an address of http or https
  bool operator==(const OpenTarget&) const = default;
};

/// A widget that the extension offers. Families that this host does not know are left out.
struct WidgetDeclaration {
  std::string kind;
  std::string displayName;
  std::string description;
  std::vector<protocol::WidgetFamily> families;
  std::vector<OpenTarget> opens = {};  ///< in order of preference
  bool operator==(const WidgetDeclaration&) const = default;
};

/// The first widget that comes in the family; where no family is given, the first at all.
std::expected<WidgetDeclaration, ExtensionFailure> firstWidget(const std::vector<WidgetDeclaration>& widgets,
                                                               std::optional<protocol::WidgetFamily> family);

struct TimelineAnswer {
  std::vector<Entry> entries;  ///< one or more, each with a date
  absl::Time reload;           ///< ask again at or after
};

/// The largest view that a host draws: nodes, and how deep they lie in one another.
inline constexpr std::size_t mostNodes = 5000;
inline constexpr std::size_t deepestNode = 64;
/// Bytes of a text that are drawn; the rest is an ellipsis.
inline constexpr std::size_t longestText = std::size_t{64} << 10;

// The error of each is a sentence that names the field at fault.
/// Targets of `opens` that no host should open are left out: addresses of another scheme, ids that are no file name.
std::expected<std::vector<WidgetDeclaration>, std::string> readWidgets(const nlohmann::json& result);
/// The result of `placeholder` and `snapshot`, checked and handed back as it came.
std::expected<nlohmann::json, std::string> readEntryAnswer(nlohmann::json result);
std::expected<TimelineAnswer, std::string> readTimeline(const nlohmann::json& result);
/// Texts longer than `longestText` are cut.
std::expected<protocol::Node, std::string> readView(const nlohmann::json& result);

}  // namespace host
