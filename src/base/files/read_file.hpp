// Reads a whole file that may be anything: missing, huge, a folder, a pipe that nobody writes to.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>

namespace base {

struct ReadFailure {
  enum class Kind {
    missing,  ///< no such file, or a dangling link
    unusable  ///< it cannot be read, is not a regular file, or is too large
  };
  Kind kind = Kind::unusable;
  std::string reason;  ///< for a person: "Permission denied"
};

/// Never waits for another process.
std::expected<std::string, ReadFailure> readFile(const std::filesystem::path& file, std::size_t sizeLimit);

}  // namespace base
