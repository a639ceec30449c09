// Any bytes as a placements file. What is read is within its bounds and reads back equal after it is written: with
// every foreign key, and as the same text when written again.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "desktop/placement/placement_document.hpp"
#include "require.hpp"

namespace {

using namespace desktop;
using fuzz::require;

bool withinBounds(const Placed& placed) {
  const Point& inset = placed.place.inset;
  return placed.id > 0 && !placed.kind.empty() && std::abs(inset.x) <= farthestInset &&
         std::abs(inset.y) <= farthestInset && placed.zoom >= leastZoom && placed.zoom <= mostZoom;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto document = readPlacements(text);
  const std::string fresh = writePlacements({}, text);
  require(readPlacements(fresh).value().state.placements.empty());
  if (!document) return 0;
  const Placements& placements = document->state.placements;
  require(placements.all().size() + document->dropped <= mostCopies);
  for (const Placed& placed : placements.all()) require(withinBounds(placed) && placements.find(placed.id) == &placed);

  const std::string written = writePlacements(document->state, text);
  const auto again = readPlacements(written);
  require(again && again->state == document->state && again->dropped == 0);
  require(writePlacements(again->state, written) == written);

  const auto before = nlohmann::json::parse(text);
  const auto after = nlohmann::json::parse(written);
  for (const auto& [key, value] : before.items()) {
    if (key != "widgets" && key != "version") require(after.at(key) == value);
  }
  return 0;
}
