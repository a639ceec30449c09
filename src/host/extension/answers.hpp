// Results of the protocol's methods read into what a host needs of them. Anything else in them is passed over: an entry
// is opaque but for its date.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

#include "protocol/view_tree/node.hpp"

namespace host {

/// A widget that the extension offers. `families` as the protocol spells them ("systemSmall").
struct WidgetDeclaration {
  std::string kind;
  std::string displayName;
  std::string description;
  std::vector<std::string> families;
  bool operator==(const WidgetDeclaration&) const = default;
};

struct TimelineAnswer {
  nlohmann::json result;                ///< as it came
  std::vector<nlohmann::json> entries;  ///< one or more, each with a date
  absl::Time reload;                    ///< ask again at or after
};

// The error of each is a sentence that names the field at fault.
std::expected<std::vector<WidgetDeclaration>, std::string> readWidgets(const nlohmann::json& result);
/// The result of `placeholder` and `snapshot`, checked and handed back as it came.
std::expected<nlohmann::json, std::string> readEntryAnswer(nlohmann::json result);
std::expected<TimelineAnswer, std::string> readTimeline(nlohmann::json result);
std::expected<protocol::Node, std::string> readView(const nlohmann::json& result);

}  // namespace host
