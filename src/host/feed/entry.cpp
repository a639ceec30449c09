#include "host/feed/entry.hpp"

#include "base/text/instant.hpp"

namespace host {
namespace {

using nlohmann::json;

std::optional<absl::Time> dateOf(const json& entry) {
  const auto date = base::parseInstant(entry.value("date", std::string()));
  return date ? std::optional(*date) : std::nullopt;
}

}  // namespace

BoardHolds holdingOf(const json& entry) {
  const auto sentence = entry.is_object() ? entry.find("blad") : entry.end();
  return sentence != entry.end() && sentence->is_string() ? BoardHolds::sentence : BoardHolds::day;
}

const json& entryAt(const TimelineAnswer& timeline, absl::Time now) {
  const json* shown = &timeline.entries.front();
  std::optional<absl::Time> since;
  for (const auto& entry : timeline.entries) {
    const auto date = dateOf(entry);
    if (!date || *date > now || (since && *date < *since)) continue;
    shown = &entry;
    since = date;
  }
  return *shown;
}

std::optional<absl::Time> nextEntryAfter(const TimelineAnswer& timeline, absl::Time now) {
  std::optional<absl::Time> next;
  for (const auto& entry : timeline.entries) {
    const auto date = dateOf(entry);
    if (date && *date > now && (!next || *date < *next)) next = date;
  }
  return next;
}

}  // namespace host
