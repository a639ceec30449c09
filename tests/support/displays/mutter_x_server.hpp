// What mutter and GNOME Shell say of the X server that they start for programs of X11.
#pragma once

#include <filesystem>
#include <string>

namespace support {

/// Its display, as in ":1", by the compositor's log; empty while it is not known.
std::string xDisplayOfMutter(const std::string& log);
/// The file with its cookie, in the session's runtime folder; empty while there is none.
std::string xAuthorityOfMutter(const std::filesystem::path& runtimeFolder);

}  // namespace support
