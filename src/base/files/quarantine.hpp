// Files that can't be used are kept for whoever wants to look at them, under another name.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace base {

/// Renames whatever the path leads to (through links, which stay) to its name with "SUFFIX-1", or the first number that
/// is free, behind it; nothing is ever overwritten. Gives the new path. The error is the system's reason.
std::expected<std::filesystem::path, std::string> quarantine(const std::filesystem::path& file,
                                                             const std::string& suffix);

}  // namespace base
