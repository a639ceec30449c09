// Replaces files atomically. Errors are only the system's reason ("No space left on device"); the caller adds which
// file it was.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace base {

/// Whether the new content has to be on the disk when the call returns. A file that can be made again does not need it;
/// a person's settings do, so that they are not empty after a power failure.
enum class Durability { fast, lasting };

/// The permissions of a file or folder that did not exist, before the process's umask.
struct Rights {
  mode_t file = 0666;
  mode_t folder = 0700;
};

/// Replaces the file's content atomically: writes a temporary file beside it and renames it. A reader sees the old or
/// the new content, and a failure leaves the old one. Links are followed, also to a file that does not exist yet. The
/// permissions and, where possible, the owner of an existing file stay. Anything but a regular file is refused.
std::expected<void, std::string> replaceFile(const std::filesystem::path& file, std::string_view bytes,
                                             Durability durability, Rights rights = {});

/// Removes temporary files that killed processes left beside the file. `replaceFile` does it too.
void removeLeftovers(const std::filesystem::path& file);

/// Makes the folder and those above it that are missing.
std::expected<void, std::string> makeFolders(const std::filesystem::path& folder, Rights rights = {});

/// The file that opening this path would reach, whether it exists or not. A cycle of links is an error.
std::expected<std::filesystem::path, std::string> behindLinks(const std::filesystem::path& file);

}  // namespace base
