// The text of the placements file: a JSON object with a format name, a version, the copies and the settings. The store
// knows which file it is and what to do with one that can't be read.
//
//   {"format": "vamba-placements", "version": 1,
//    "appearance": "dark", "background": "translucent", "locked": true,
//    "widgets": [{"id": 1, "kind": "...", "family": "systemSmall", "monitor": {...}, "corner": "topRight", "x": 20,
//                 "y": 20, "zoom": 125}]}
//
// The settings and `zoom` may be absent, as in files of earlier versions. A setting with an unknown value counts as
// absent.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "desktop/placement/desktop_state.hpp"

namespace desktop {

/// In bytes. A hundred copies take about 40 000.
inline constexpr std::size_t largestPlacementDocument = 1U << 20U;

/// In points. No desktop is so large; an entry with a larger inset is dropped.
inline constexpr int farthestInset = 1'000'000;

struct PlacementDocument {
  DesktopState state;
  std::size_t dropped = 0;  ///< entries that can't be read or repeat an id
};

/// The entries that can be read; others are counted in `dropped`. If nothing of the document can be used, the error
/// says why, as the end of a sentence for a person: "its version is not 1".
std::expected<PlacementDocument, std::string> readPlacements(std::string_view text);

/// The text for this state. Keys of `previous` that this program does not know, for example those of a later
/// version, are kept: in the document itself, in each copy (by its id) and in its monitor. So is a setting that has not
/// changed. If `previous` is not a placements document, it is ignored.
std::string writePlacements(const DesktopState& state, std::string_view previous);

}  // namespace desktop
