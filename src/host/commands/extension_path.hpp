// Where the extension is installed beside its host.
#pragma once

#include <filesystem>

namespace host {

/// `../libexec/vamba/vamba-widzety` seen from the host's own folder, or the program beside the host, where a build tree
/// has it.
std::filesystem::path usualExtensionPath();

}  // namespace host
