// What a host reads of the entries of a timeline.
#pragma once

#include <optional>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

#include "host/extension/answers.hpp"

namespace host {

/// What stands on the board: the day, or a sentence instead of it (the entry has a `blad`).
enum class BoardHolds { day, sentence };

BoardHolds holdingOf(const nlohmann::json& entry);

/// The entry of a timeline that is shown at `now`: the last whose date has come, else the first.
const nlohmann::json& entryAt(const TimelineAnswer& timeline, absl::Time now);

/// When the next entry takes its place; none when the last is shown.
std::optional<absl::Time> nextEntryAfter(const TimelineAnswer& timeline, absl::Time now);

}  // namespace host
