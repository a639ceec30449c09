// Sets files that cannot be used aside under another name, so that nothing is lost.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace base {

/// Renames the file that the path leads to (links on the way stay) by appending `suffix` and "-1", or the first number
/// that is free. Never overwrites a file. Returns the new path; the error is the system's reason.
std::expected<std::filesystem::path, std::string> quarantine(const std::filesystem::path& file,
                                                             const std::string& suffix);

}  // namespace base
