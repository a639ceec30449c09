// The text of the placements file: a JSON object with a format name, a version and the copies. The store knows which
// file it is and what to do with one that can't be read.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "desktop/placement/placements.hpp"

namespace desktop {

/// In bytes. A hundred copies take about 40 000.
inline constexpr std::size_t largestPlacementDocument = 1U << 20U;

/// In points. No desktop is so large; an entry with a larger inset is dropped.
inline constexpr int farthestInset = 1'000'000;

struct PlacementDocument {
  Placements placements;
  std::size_t dropped = 0;  ///< entries that can't be read or repeat an id
};

/// The entries that can be read; others are counted in `dropped`. If nothing of the document can be used, the error
/// says why, as the end of a sentence for a person: "its version is not 1".
std::expected<PlacementDocument, std::string> readPlacements(std::string_view text);

/// The text for these placements. Keys of `previous` that this program does not know, for example those of a later
/// version, are kept: in the document itself, in each copy (by its id) and in its monitor. If `previous` is not a
/// placements document, it is ignored.
std::string writePlacements(const Placements& placements, std::string_view previous);

}  // namespace desktop
