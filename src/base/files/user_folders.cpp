#include "base/files/user_folders.hpp"

namespace base {
namespace {

std::optional<std::filesystem::path> absolutePath(const char* value) {
  if (value == nullptr || *value != '/') return std::nullopt;
  return value;
}

}  // namespace

std::optional<std::filesystem::path> userConfigFolder(EnvironmentLookup environment) {
  if (auto folder = absolutePath(environment("XDG_CONFIG_HOME"))) return folder;
  if (const auto home = absolutePath(environment("HOME"))) return *home / ".config";
  return std::nullopt;
}

std::optional<std::filesystem::path> userDataFolder(EnvironmentLookup environment) {
  if (auto folder = absolutePath(environment("XDG_DATA_HOME"))) return folder;
  if (const auto home = absolutePath(environment("HOME"))) return *home / ".local/share";
  return std::nullopt;
}

}  // namespace base
