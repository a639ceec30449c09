// Where keychain items are, according to the environment at the time of the call.
#pragma once

#include <optional>
#include <string>

namespace platform {

/// A variable's value; absent where it is not set or empty.
std::optional<std::string> environmentText(const std::string& name);

/// `DBUS_SESSION_BUS_ADDRESS`, else the socket `bus` in `XDG_RUNTIME_DIR`; absent where neither is set.
std::optional<std::string> sessionBusAddress();

}  // namespace platform
