// Files that are there whole or not at all. Errors are the system's reason alone ("No space left on device"): what was
// to be written is the caller's to name.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace base {

/// Whether the new content has to be on the disk when the call returns. A file that can be made again needs no such
/// wait; one that holds a person's settings must not come back empty after a power cut.
enum class Durability { fast, lasting };

/// What a file or folder that did not exist may be done with, before the process's umask.
struct Rights {
  mode_t file = 0666;
  mode_t folder = 0700;
};

/// Replaces the file's content at once: written beside it, then renamed over it, so that nobody ever reads half of it
/// and a failure leaves the old content. Through links the file behind them is replaced, also one that is not there
/// yet. The rights and, where possible, the owner of an existing file stay. What is no regular file is refused.
std::expected<void, std::string> replaceFile(const std::filesystem::path& file, std::string_view bytes,
                                             Durability durability, Rights rights = {});

/// Removes what processes that were killed while they replaced the file left beside it. `replaceFile` does it too.
void removeLeftovers(const std::filesystem::path& file);

/// Makes the folder and those above it that are missing.
std::expected<void, std::string> makeFolders(const std::filesystem::path& folder, Rights rights = {});

/// The file that opening this path would reach, whether it exists or not; links that only lead to each other are an
/// error.
std::expected<std::filesystem::path, std::string> behindLinks(const std::filesystem::path& file);

}  // namespace base
