#include "desktop/placement/placement_document.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "protocol/json_rpc/json_text.hpp"

namespace desktop {
namespace {

using nlohmann::json;

constexpr std::string_view formatName = "vamba-placements";
constexpr int version = 1;
constexpr std::size_t longestName = 256;  ///< of a kind, a family or a part of a monitor's identity, in bytes

constexpr std::array<std::pair<Corner, std::string_view>, 4> corners{{{Corner::topLeft, "topLeft"},
                                                                      {Corner::topRight, "topRight"},
                                                                      {Corner::bottomLeft, "bottomLeft"},
                                                                      {Corner::bottomRight, "bottomRight"}}};

/// A whole number between the bounds, however it is spelt (20, 20.0, 2e1).
std::optional<int> wholeNumber(const json& object, const char* key, int least, int most) {
  const auto found = object.find(key);
  if (found == object.end() || !found->is_number()) return std::nullopt;
  const double number = found->get<double>();
  if (!(number >= least && number <= most) || number != std::floor(number)) return std::nullopt;
  return static_cast<int>(number);
}

/// A text that is not too long; the empty one where the key is absent.
std::optional<std::string> name(const json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end()) return std::string();
  if (!found->is_string() || found->get_ref<const std::string&>().size() > longestName) return std::nullopt;
  return found->get<std::string>();
}

std::optional<MonitorIdentity> monitorFrom(const json& object) {
  const auto found = object.find("monitor");
  if (found == object.end() || !found->is_object()) return std::nullopt;
  auto make = name(*found, "make");
  auto model = name(*found, "model");
  auto serial = name(*found, "serial");
  auto connector = name(*found, "connector");
  if (!make || !model || !serial || !connector) return std::nullopt;
  return MonitorIdentity{*std::move(make), *std::move(model), *std::move(serial), *std::move(connector)};
}

std::optional<Corner> cornerFrom(const json& object) {
  const auto word = name(object, "corner");
  for (const auto& [corner, spelling] : corners) {
    if (word == spelling) return corner;
  }
  return std::nullopt;
}

std::optional<int> idFrom(const json& object) { return wholeNumber(object, "id", 1, std::numeric_limits<int>::max()); }

std::optional<Placed> placedFrom(const json& object) {
  if (!object.is_object()) return std::nullopt;
  const auto id = idFrom(object);
  auto kind = name(object, "kind");
  auto family = name(object, "family");
  auto monitor = monitorFrom(object);
  const auto corner = cornerFrom(object);
  const auto x = wholeNumber(object, "x", -farthestInset, farthestInset);
  const auto y = wholeNumber(object, "y", -farthestInset, farthestInset);
  if (!id || !kind || kind->empty() || !family || family->empty() || !monitor || !corner || !x || !y) {
    return std::nullopt;
  }
  return Placed{*id, *std::move(kind), *std::move(family), {*std::move(monitor), *corner, {*x, *y}}};
}

std::expected<json, std::string> document(std::string_view text) {
  auto parsed = protocol::json_rpc::parseJson(text);
  if (!parsed) return std::unexpected(parsed.error());
  const auto format = parsed->find("format");
  if (!parsed->is_object() || format == parsed->end() || *format != formatName) {
    return std::unexpected("it is no placements file");
  }
  if (wholeNumber(*parsed, "version", version, version) != version) {
    return std::unexpected("its version is not " + std::to_string(version));
  }
  const auto widgets = parsed->find("widgets");
  if (widgets == parsed->end() || !widgets->is_array()) return std::unexpected("it holds no list of widgets");
  if (widgets->size() > mostCopies) {
    return std::unexpected("it holds more than " + std::to_string(mostCopies) + " widgets");
  }
  return parsed;
}

/// The entry that said where this copy is, with all that it said; an empty object where there is none.
json entryOf(int id, const json& widgets) {
  for (const json& entry : widgets) {
    if (entry.is_object() && idFrom(entry) == id) return entry;
  }
  return json::object();
}

void describe(const Placed& placed, json& entry) {
  entry["id"] = placed.id;
  entry["kind"] = placed.kind;
  entry["family"] = placed.family;
  json& monitor = entry["monitor"];
  if (!monitor.is_object()) monitor = json::object();
  const MonitorIdentity& identity = placed.place.monitor;
  monitor["make"] = identity.make;
  monitor["model"] = identity.model;
  monitor["serial"] = identity.serial;
  monitor["connector"] = identity.connector;
  for (const auto& [corner, spelling] : corners) {
    if (corner == placed.place.corner) entry["corner"] = spelling;
  }
  entry["x"] = placed.place.inset.x;
  entry["y"] = placed.place.inset.y;
}

}  // namespace

std::expected<PlacementDocument, std::string> readPlacements(std::string_view text) {
  const auto parsed = document(text);
  if (!parsed) return std::unexpected(parsed.error());
  std::vector<Placed> all;
  std::size_t dropped = 0;
  for (const json& entry : parsed->at("widgets")) {
    auto placed = placedFrom(entry);
    const bool idTaken = placed && std::ranges::find(all, placed->id, &Placed::id) != all.end();
    if (placed && !idTaken) {
      all.push_back(*std::move(placed));
    } else {
      ++dropped;
    }
  }
  return PlacementDocument{Placements(std::move(all)), dropped};
}

std::string writePlacements(const Placements& placements, std::string_view previous) {
  json written = document(previous).value_or(json::object());
  const json before = std::exchange(written["widgets"], json::array());
  written["format"] = formatName;
  written["version"] = version;
  for (const Placed& placed : placements.all()) {
    json entry = entryOf(placed.id, before);
    describe(placed, entry);
    written["widgets"].push_back(std::move(entry));
  }
  return written.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

}  // namespace desktop
