// Expected outputs kept as reviewable files below tests/goldens/. With VAMBA_ACCEPT_GOLDENS=1 in the environment what a
// test shows becomes the expectation, to be read in the diff.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace support {

/// Success where the file `name` (a path below tests/goldens/) holds exactly `text`. A file that is missing is a
/// failure, not an acceptance.
testing::AssertionResult matchesGolden(const std::string& name, std::string_view text);

/// For goldens that are compared otherwise: their content, empty where the file is missing.
std::string golden(const std::string& name);

/// Where the environment asks for it, writes the file; success where it could be written. Absent where nothing is
/// asked.
std::optional<testing::AssertionResult> acceptedGolden(const std::string& name, std::string_view content);

}  // namespace support
