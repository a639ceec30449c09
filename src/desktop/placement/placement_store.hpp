// The file that keeps the placements: `placements.json` in the folder `vamba` of the user's configuration. What can't
// be read is never lost and never in the way.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "base/files/user_folders.hpp"
#include "desktop/placement/placements.hpp"

namespace desktop {

/// None where the environment names no folder.
std::optional<std::filesystem::path> placementsFile(base::EnvironmentLookup environment);

struct LoadedPlacements {
  Placements placements;
  bool firstStart = false;            ///< there was no file
  std::optional<std::string> notice;  ///< what a person should know, as a sentence without a full stop
};

/// One at a time for a file: what others write to it between `load` and `save` is replaced.
class PlacementStore {
 public:
  explicit PlacementStore(std::filesystem::path file) : file_(std::move(file)) {}

  /// A file that is no placements file, of another version, too large, or can't be read is set aside beside it (as
  /// `placements.json.damaged-1`, -2...), and there are no placements. Of one with bad entries among good ones, the
  /// whole file is kept aside likewise, and the good ones go on. Either way the next start has nothing to say.
  LoadedPlacements load();

  /// The old file stays whatever happens. The error is a sentence for a person, without a full stop.
  std::expected<void, std::string> save(const Placements& placements);

 private:
  /// What was done with the file, for the notice.
  std::string keepAside(const std::string& reason);

  std::filesystem::path file_;
  std::string document_;        ///< as last read or written: its keys that this program does not know are kept
  bool stillInTheWay_ = false;  ///< a file that can't be used and could not be set aside yet
};

}  // namespace desktop
