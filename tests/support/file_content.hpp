// What is in files and folders, for expectations.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace support {

inline std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The names in a folder; none where there is no such folder.
inline std::set<std::string> namesIn(const std::filesystem::path& folder) {
  std::set<std::string> names;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) names.insert(entry.path().filename());
  return names;
}

}  // namespace support
