#include "support/displays/mutter_x_server.hpp"

#include <string_view>

namespace support {

// In the line "Using public X11 display :1, (using :2 for managed services)".
std::string xDisplayOfMutter(const std::string& log) {
  constexpr std::string_view before = "Using public X11 display ";
  const auto begin = log.find(before);
  if (begin == std::string::npos) return {};
  const auto end = log.find(',', begin);
  if (end == std::string::npos) return {};
  return log.substr(begin + before.size(), end - begin - before.size());
}

std::string xAuthorityOfMutter(const std::filesystem::path& runtimeFolder) {
  for (const auto& entry : std::filesystem::directory_iterator(runtimeFolder)) {
    if (entry.path().filename().native().starts_with(".mutter-Xwaylandauth")) return entry.path().native();
  }
  return {};
}

}  // namespace support
