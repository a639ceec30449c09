// Where a person's own files are (XDG Base Directory Specification).
#pragma once

#include <filesystem>
#include <optional>

#include <absl/functional/function_ref.h>

namespace base {

/// The value of an environment variable, or null, as of std::getenv.
using EnvironmentLookup = absl::FunctionRef<const char*(const char* name)>;

/// `$XDG_CONFIG_HOME`, else `$HOME/.config`; a relative path counts as unset. Absent where neither is set.
std::optional<std::filesystem::path> userConfigFolder(EnvironmentLookup environment);

/// `$XDG_DATA_HOME`, else `$HOME/.local/share`; otherwise as `userConfigFolder`.
std::optional<std::filesystem::path> userDataFolder(EnvironmentLookup environment);

}  // namespace base
