#include "platform/keychain/keychain_environment.hpp"

#include <cstdlib>
#include <string_view>

namespace platform {
namespace {

// Escapes bytes that a D-Bus server address may not hold as %xx.
std::string escapedForAddress(std::string_view text) {
  constexpr std::string_view plain = "-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz/.\\*";
  constexpr std::string_view digits = "0123456789abcdef";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (plain.find(c) != std::string_view::npos) {
      escaped += c;
    } else {
      escaped += {'%', digits[byte >> 4], digits[byte & 0xf]};
    }
  }
  return escaped;
}

}  // namespace

std::optional<std::string> environmentText(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::optional<std::string> sessionBusAddress() {
  if (auto address = environmentText("DBUS_SESSION_BUS_ADDRESS")) return address;
  const auto folder = environmentText("XDG_RUNTIME_DIR");
  if (!folder) return std::nullopt;
  return "unix:path=" + escapedForAddress(*folder + "/bus");
}

}  // namespace platform
