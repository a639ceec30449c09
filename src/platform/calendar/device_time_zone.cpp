#include "platform/calendar/device_time_zone.hpp"

#include <array>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

#include <absl/strings/ascii.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr const char* localTimeFile = "/etc/localtime";

/// Zones that only the C library can read: POSIX rules, and files outside the zone folder. Its conversions are slower,
/// and follow later changes of the zone.
absl::TimeZone zoneOfTheCLibrary() {
  tzset();
  absl::TimeZone zone;
  return absl::LoadTimeZone("libc:localtime", &zone) ? zone : absl::UTCTimeZone();
}

/// Whether `name` can be handed to the zone loader. Zone names are folders and words; the loader also knows
/// names ("localtime", "libc:...", "Fixed/UTC+01:00:00") that the C library does not.
bool isZoneName(std::string_view name) {
  if (name.empty() || name.front() == '/' || name == "localtime" || name.starts_with("Fixed/")) return false;
  for (const char c : name) {
    if (!absl::ascii_isalnum(static_cast<unsigned char>(c)) && c != '/' && c != '_' && c != '-' && c != '+')
      return false;
  }
  return true;
}

std::optional<absl::TimeZone> loadByName(std::string_view name) {
  absl::TimeZone zone;
  if (isZoneName(name) && absl::LoadTimeZone(std::string(name), &zone)) return zone;
  return std::nullopt;
}

/// The name behind a link such as /usr/share/zoneinfo/Europe/Warsaw; empty where the file is no such link.
std::string nameBehindLink(const char* path) {
  std::array<char, 4096> target{};
  const auto length = readlink(path, target.data(), target.size());
  if (length <= 0) return {};
  const std::string_view text(target.data(), static_cast<std::size_t>(length));
  constexpr std::string_view folder = "/zoneinfo/";
  const auto at = text.rfind(folder);
  return at == std::string_view::npos ? std::string{} : std::string(text.substr(at + folder.size()));
}

/// The file that the C library and the zone loader open for a name.
std::string zoneFile(std::string_view name) {
  if (name.starts_with('/')) return std::string(name);
  const char* const folder = std::getenv("TZDIR");
  return (folder == nullptr ? "/usr/share/zoneinfo" : std::string(folder)).append("/").append(name);
}

/// Whether opening or reading the file could wait for another process. A folder only fails to be read.
bool isPipeOrDevice(const std::string& file) {
  struct stat status{};
  return stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

}  // namespace

absl::TimeZone deviceTimeZone() {
  if (const char* value = std::getenv("TZ")) {
    std::string_view name(value);
    if (name.starts_with(':')) name.remove_prefix(1);
    if (isPipeOrDevice(zoneFile(name))) return absl::UTCTimeZone();
    if (const auto zone = loadByName(name)) return *zone;
    return zoneOfTheCLibrary();
  }
  if (isPipeOrDevice(localTimeFile)) return absl::UTCTimeZone();
  if (const auto zone = loadByName(nameBehindLink(localTimeFile))) return *zone;
  return zoneOfTheCLibrary();
}

}  // namespace platform
