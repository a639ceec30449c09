// What a host reads of the entries of a timeline.
#pragma once

#include <optional>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

#include "host/extension/answers.hpp"
#include "host/status_line/status_line.hpp"

namespace host {

/// Whether an entry carries a sentence instead of data.
BoardHolds holdingOf(const nlohmann::json& entry);

/// The entry of a timeline that is shown at `now`: the last whose date has come, else the first.
const nlohmann::json& entryAt(const TimelineAnswer& timeline, absl::Time now);

/// When the next entry takes its place; none when the last is shown.
std::optional<absl::Time> nextEntryAfter(const TimelineAnswer& timeline, absl::Time now);

}  // namespace host
