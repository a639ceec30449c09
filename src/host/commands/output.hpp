// Where a command's result goes: standard output, or a file that is there whole or not at all.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "host/command_line/outcome.hpp"

namespace host {

/// Writes all of it. The error is a sentence for a person.
std::expected<void, std::string> writeStandardOutput(std::string_view bytes);

/// The same as the whole of a command: why it could not be written is why the command failed.
CommandResult print(std::string_view text);

/// Replaces the file at once (a file beside it, then rename(2)), so that nobody ever reads half of it; what is no plain
/// file (/dev/stdout, a pipe) is written to as it is.
std::expected<void, std::string> writeFile(const std::filesystem::path& file, std::string_view bytes);

inline std::expected<void, std::string> write(const std::optional<std::filesystem::path>& file,
                                              std::string_view bytes) {
  return file ? writeFile(*file, bytes) : writeStandardOutput(bytes);
}

/// The whole of a file, or of standard input for "-". More than `longest` bytes are an error.
std::expected<std::string, std::string> readAll(const std::string& fileOrDash, std::size_t longest);

}  // namespace host
