// The file `placements.json` in the folder `vamba` of the user's configuration. A file that can't be read is renamed,
// so that it is neither lost nor in the way.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "base/files/user_folders.hpp"
#include "desktop/placement/desktop_state.hpp"

namespace desktop {

/// None if the environment names no folder.
std::optional<std::filesystem::path> placementsFile(base::EnvironmentLookup environment);

struct LoadedPlacements {
  DesktopState state = {};
  bool firstStart = false;            ///< there was no file
  std::optional<std::string> notice;  ///< for a person: a sentence without a full stop
};

/// Only one process may use the file: what others write between `load` and `save` is lost.
class PlacementStore {
 public:
  explicit PlacementStore(std::filesystem::path file) : file_(std::move(file)) {}

  /// A file that can't be read, is too large, is not a placements file or is of another version is renamed to
  /// `placements.json.damaged-1` (-2, ...), and the result has no placements. A file with some bad entries is kept
  /// under such a name too, and the good entries are returned and saved anew.
  LoadedPlacements load();

  /// If it fails, the old file stays as it is. The error is a sentence for a person, without a full stop.
  std::expected<void, std::string> save(const DesktopState& state);

 private:
  /// Renames the file. Returns what was done, for the notice.
  std::string keepAside(const std::string& reason);

  std::filesystem::path file_;
  std::string document_;        ///< as last read or written, for its unknown keys
  bool stillInTheWay_ = false;  ///< an unusable file could not be renamed yet
};

}  // namespace desktop
