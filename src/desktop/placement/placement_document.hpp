// The text of the placements file: a JSON object with a format name, a version and the copies. Which file that is, and
// what becomes of one that can't be read, is the store's matter.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "desktop/placement/placements.hpp"

namespace desktop {

/// In bytes; a hundred copies take 40 000.
inline constexpr std::size_t largestPlacementDocument = 1U << 20U;

/// Farther than this from its corner, in points, no copy is on any desktop.
inline constexpr int farthestInset = 1'000'000;

struct PlacementDocument {
  Placements placements;
  std::size_t dropped = 0;  ///< entries that describe no copy, or one whose id was taken already
};

/// The good entries of a document, even beside bad ones. The error is a sentence's end for a person: "it is of version
/// 7", where nothing of it can be used.
std::expected<PlacementDocument, std::string> readPlacements(std::string_view text);

/// The text for these placements. Keys of `previous` that this program does not know, which a later version may have
/// written beside those it knows, stay as they are: of the document itself, of each copy by its id, and of its monitor.
/// A `previous` that is no such document adds nothing.
std::string writePlacements(const Placements& placements, std::string_view previous);

}  // namespace desktop
