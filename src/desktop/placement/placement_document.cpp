#include "desktop/placement/placement_document.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

#include "base/json/json_object.hpp"
#include "base/json/json_text.hpp"

namespace desktop {
namespace {

using base::JsonObject;
using nlohmann::json;

constexpr std::string_view formatName = "vamba-placements";
constexpr int version = 1;
constexpr std::size_t longestName = 256;  ///< of a kind or a part of a monitor's identity, in bytes

constexpr std::array<std::pair<Corner, std::string_view>, 4> corners{{{Corner::topLeft, "topLeft"},
                                                                      {Corner::topRight, "topRight"},
                                                                      {Corner::bottomLeft, "bottomLeft"},
                                                                      {Corner::bottomRight, "bottomRight"}}};

constexpr std::array<std::pair<Scheme, std::string_view>, 3> schemes{
    {{Scheme::system, "system"}, {Scheme::light, "light"}, {Scheme::dark, "dark"}}};

constexpr std::array<std::pair<Background, std::string_view>, 3> backgrounds{
    {{Background::solid, "solid"}, {Background::translucent, "translucent"}, {Background::none, "none"}}};

// A fault of one entry drops that entry alone. Nobody sees the messages.

int wholeNumber(const JsonObject& object, const char* key, int least, int most) {
  const std::int64_t number = object.integer(key);
  if (number < least || number > most) object.refuse(key, "out of range");
  return static_cast<int>(number);
}

/// A text that is not too long; empty if the key is absent.
std::string name(const JsonObject& object, const char* key) {
  auto text = object.optionalText(key).value_or("");
  if (text.size() > longestName) object.refuse(key, "too long");
  return text;
}

std::string nameThatIsThere(const JsonObject& object, const char* key) {
  auto text = name(object, key);
  if (text.empty()) object.refuse(key, "missing");
  return text;
}

MonitorIdentity monitorFrom(const JsonObject& object) {
  const auto monitor = object.optionalObject("monitor");
  if (!monitor) object.refuse("monitor", "missing");
  return {name(*monitor, "make"), name(*monitor, "model"), name(*monitor, "serial"), name(*monitor, "connector")};
}

Corner cornerFrom(const JsonObject& object) {
  const auto word = object.text("corner");
  const auto found = std::ranges::find(corners, word, [](const auto& corner) { return corner.second; });
  if (found == corners.end()) object.refuse("corner", "not a known value");
  return found->first;
}

protocol::WidgetFamily familyFrom(const JsonObject& object) {
  return object.parsed("family", protocol::widgetFamilyNamed, "not a known value");
}

int idFrom(const JsonObject& object) { return wholeNumber(object, "id", 1, std::numeric_limits<int>::max()); }

Placed placedFrom(const JsonObject& object) {
  return {idFrom(object),
          nameThatIsThere(object, "kind"),
          familyFrom(object),
          {monitorFrom(object),
           cornerFrom(object),
           {wholeNumber(object, "x", -farthestInset, farthestInset),
            wholeNumber(object, "y", -farthestInset, farthestInset)}},
          object.find("zoom") == nullptr ? Placed().zoom : wholeNumber(object, "zoom", leastZoom, mostZoom)};
}

/// The value that the setting's word names, else the first.
template <typename Values>
auto settingIn(const json& document, const char* key, const Values& values) {
  const auto word = document.find(key);
  const auto isNamed = [&](const auto& value) { return word != document.end() && *word == value.second; };
  const auto found = std::ranges::find_if(values, isNamed);
  return (found == values.end() ? values.front() : *found).first;
}

DesktopSettings settingsIn(const json& document) {
  const auto locked = document.find("locked");
  return {.scheme = settingIn(document, "appearance", schemes),
          .background = settingIn(document, "background", backgrounds),
          .locked = locked != document.end() && *locked == true};
}

template <typename Values, typename Value>
void describe(const Values& values, Value value, json& word) {
  word = std::ranges::find(values, value, [](const auto& each) { return each.first; })->second;
}

/// Writes what has changed; other settings keep the words that they have.
void describe(const DesktopSettings& settings, json& document) {
  const DesktopSettings before = settingsIn(document);
  if (settings.scheme != before.scheme) describe(schemes, settings.scheme, document["appearance"]);
  if (settings.background != before.background) describe(backgrounds, settings.background, document["background"]);
  if (settings.locked != before.locked) document["locked"] = settings.locked;
}

std::expected<json, std::string> document(std::string_view text) {
  auto parsed = base::parseJson(text);
  if (!parsed) return std::unexpected(parsed.error());
  const auto format = parsed->find("format");
  if (!parsed->is_object() || format == parsed->end() || *format != formatName) {
    return std::unexpected("it is no placements file");
  }
  const auto readVersion = [](const JsonObject& object) { return object.integer("version"); };
  if (base::readObject(*parsed, "file", readVersion).value_or(0) != version) {
    return std::unexpected("its version is not " + std::to_string(version));
  }
  const auto widgets = parsed->find("widgets");
  if (widgets == parsed->end() || !widgets->is_array()) return std::unexpected("it holds no list of widgets");
  if (widgets->size() > mostCopies) {
    return std::unexpected("it holds more than " + std::to_string(mostCopies) + " widgets");
  }
  return parsed;
}

/// The entry of this copy with all its keys, or an empty object if there is none.
json entryOf(int id, const json& widgets) {
  for (const json& entry : widgets) {
    if (base::readObject(entry, "widget", idFrom) == id) return entry;
  }
  return json::object();
}

void describe(const Placed& placed, json& entry) {
  entry["id"] = placed.id;
  entry["kind"] = placed.kind;
  entry["family"] = nameOf(placed.family);
  json& monitor = entry["monitor"];
  if (!monitor.is_object()) monitor = json::object();
  const MonitorIdentity& identity = placed.place.monitor;
  monitor["make"] = identity.make;
  monitor["model"] = identity.model;
  monitor["serial"] = identity.serial;
  monitor["connector"] = identity.connector;
  describe(corners, placed.place.corner, entry["corner"]);
  entry["x"] = placed.place.inset.x;
  entry["y"] = placed.place.inset.y;
  if (placed.zoom != Placed().zoom || entry.contains("zoom")) entry["zoom"] = placed.zoom;
}

}  // namespace

std::expected<PlacementDocument, std::string> readPlacements(std::string_view text) {
  const auto parsed = document(text);
  if (!parsed) return std::unexpected(parsed.error());
  std::vector<Placed> all;
  std::size_t dropped = 0;
  for (const json& entry : parsed->at("widgets")) {
    auto placed = base::readObject(entry, "widget", placedFrom);
    const bool idTaken = placed && std::ranges::find(all, placed->id, &Placed::id) != all.end();
    if (placed && !idTaken) {
      all.push_back(*std::move(placed));
    } else {
      ++dropped;
    }
  }
  return PlacementDocument{{Placements(std::move(all)), settingsIn(*parsed)}, dropped};
}

std::string writePlacements(const DesktopState& state, std::string_view previous) {
  json written = document(previous).value_or(json::object());
  describe(state.settings, written);
  const json before = std::exchange(written["widgets"], json::array());
  written["format"] = formatName;
  written["version"] = version;
  for (const Placed& placed : state.placements.all()) {
    json entry = entryOf(placed.id, before);
    describe(placed, entry);
    written["widgets"].push_back(std::move(entry));
  }
  return written.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace desktop
