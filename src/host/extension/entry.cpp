#include "host/extension/entry.hpp"

#include "base/json/json_text.hpp"
#include "base/text/instant.hpp"

namespace host {
namespace {

using nlohmann::json;

const json* textIn(const json& object, const char* name) {
  const auto found = object.is_object() ? object.find(name) : object.end();
  return object.is_object() && found != object.end() && found->is_string() ? &*found : nullptr;
}

}  // namespace

Entry entryFrom(const json& value) {
  Entry entry{.json = base::toText(value), .date = std::nullopt};
  if (const json* const date = textIn(value, "date")) {
    entry.date = base::parseInstant(date->get_ref<const std::string&>());
  }
  if (textIn(value, "blad") != nullptr) entry.holds = BoardHolds::sentence;
  return entry;
}

const Entry& entryAt(const std::vector<Entry>& entries, absl::Time now) {
  const Entry* shown = &entries.front();
  std::optional<absl::Time> since;
  for (const auto& entry : entries) {
    if (!entry.date || *entry.date > now || (since && *entry.date < *since)) continue;
    shown = &entry;
    since = entry.date;
  }
  return *shown;
}

std::optional<absl::Time> nextEntryAfter(const std::vector<Entry>& entries, absl::Time now) {
  std::optional<absl::Time> next;
  for (const auto& entry : entries) {
    if (entry.date && *entry.date > now && (!next || *entry.date < *next)) next = entry.date;
  }
  return next;
}

}  // namespace host
