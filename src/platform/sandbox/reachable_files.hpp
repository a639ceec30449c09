// Which files a restricted process may still reach.
#pragma once

#include <filesystem>
#include <vector>

namespace platform {

/// A file, or a folder with everything below it.
struct ReachableFile {
  enum class Right {
    list,           ///< open folders
    read,           ///< and read files
    readAndRemove,  ///< and remove them
  };

  std::filesystem::path path;
  Right right = Right::read;
};

/// What the C library, the TLS library and the time zones read on this system. Paths that do not exist are among them.
std::vector<ReachableFile> filesOfTheSystem();

/// The folders of a private keychain, outermost first; the items are in the last one. A folder that does not exist when
/// the rights are given up stays unreachable, for a folder above it may hold files of other programs.
///
///   ~/.local/share/vamba/keychain    {~/.local/share/vamba, list}, {~/.local/share/vamba/keychain, readAndRemove}
std::vector<ReachableFile> filesOfKeychain(const std::vector<std::filesystem::path>& folders);

}  // namespace platform
