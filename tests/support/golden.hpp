// Expected outputs kept as reviewable text files below tests/goldens/. With VAMBA_ACCEPT_GOLDENS=1 in the environment
// what a test shows becomes the expectation, to be read in the diff.
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace support {

/// Success where the file `name` (a path below tests/goldens/) holds exactly `text`. A file that is missing is a
/// failure, not an acceptance.
testing::AssertionResult matchesGolden(const std::string& name, std::string_view text);

}  // namespace support
