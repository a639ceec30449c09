// Where the host's own program is, and what is installed beside it.
#pragma once

#include <filesystem>

namespace host {

/// The folder of the running program.
std::filesystem::path programFolder();

/// The extension that comes with this host: `../libexec/vamba/vamba-widzety` seen from its folder, or the program
/// beside it, where a build tree has it.
std::filesystem::path usualExtensionPath();

}  // namespace host
