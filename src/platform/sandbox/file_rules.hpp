// Landlock: the kernel lets a process reach only the files that a rule allows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/sandbox/reachable_files.hpp"

namespace platform {

/// Denies this thread, and those that it starts, every file without a rule, and writing and executing everywhere. Paths
/// that do not exist are left out. Returns why it could not be done.
std::optional<std::string> restrictFiles(const std::vector<ReachableFile>& files);

}  // namespace platform
