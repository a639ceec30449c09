// What the environment says about where keychain items are, as it is at the moment of asking.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace platform {

/// A variable's value; nothing where it is not set or empty.
std::optional<std::string> environmentText(const std::string& name);

/// `DBUS_SESSION_BUS_ADDRESS`, else the socket `bus` in `XDG_RUNTIME_DIR`; nothing where neither is set.
std::optional<std::string> sessionBusAddress();

/// `XDG_DATA_HOME`, else `.local/share` in `HOME`; nothing where neither is an absolute path (XDG Base Directory).
std::optional<std::filesystem::path> userDataFolder();

}  // namespace platform
