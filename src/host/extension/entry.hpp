// What a host reads of the entries of a timeline, and which of them is in force.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

namespace host {

/// What stands on the board: the day, or a sentence instead of it (the entry has a `blad`).
enum class BoardHolds { day, sentence };

/// An entry to be handed back to the extension: opaque but for its date and what it holds. Kept as text, since a host
/// keeps it for long and a day may be large.
struct Entry {
  std::string json;
  std::optional<absl::Time> date;
  BoardHolds holds = BoardHolds::day;
  bool operator==(const Entry&) const = default;
};

Entry entryFrom(const nlohmann::json& value);

/// The entry that is shown at `now`: of one or more the last whose date has come, else the first.
const Entry& entryAt(const std::vector<Entry>& entries, absl::Time now);

/// When the next entry takes its place; none when the last is shown.
std::optional<absl::Time> nextEntryAfter(const std::vector<Entry>& entries, absl::Time now);

}  // namespace host
