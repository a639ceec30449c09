// The whole of a file that may be anything: missing, huge, a folder, a pipe whose other end nobody holds.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>

namespace base {

struct ReadFailure {
  enum class Kind {
    missing,  ///< there is nothing by that name, or behind the link
    unusable  ///< there is something, and it can't be read or is no plain file or too large
  };
  Kind kind = Kind::unusable;
  std::string reason;  ///< for a person: "Permission denied"
};

/// Never waits for another process.
std::expected<std::string, ReadFailure> readFile(const std::filesystem::path& file, std::size_t sizeLimit);

}  // namespace base
