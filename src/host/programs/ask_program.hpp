// One question to another program: its arguments ask, its standard output answers.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <vector>

#include <absl/time/time.h>

namespace host {

/// Runs the program to its end and gives its standard output without the last line end. A name without a slash is
/// looked up in PATH. The error is a sentence for a person: it could not be started, did not end in time (it is killed
/// then), or failed, with the last line that it wrote on standard error.
///
///   askProgram("/usr/libexec/vamba/vamba-picture", {"doctor"}, absl::Seconds(10))  // "Inter"
std::expected<std::string, std::string> askProgram(const std::filesystem::path& program,
                                                   const std::vector<std::string>& arguments, absl::Duration patience);

}  // namespace host
