// Where the host's own program is, and what is installed beside it.
#pragma once

#include <filesystem>

namespace host {

/// The running program itself.
std::filesystem::path programPath();

/// The folder of the running program.
std::filesystem::path programFolder();

/// The extension that comes with this host: in the libexec folder of its installation, or where a build tree has it. A
/// path that need not exist.
std::filesystem::path usualExtensionPath();

/// Likewise the program of the desktop.
std::filesystem::path desktopProgramPath();

}  // namespace host
