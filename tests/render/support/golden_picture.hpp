// Pictures compared with reviewed ones below tests/goldens/, with a small tolerance.
// VAMBA_ACCEPT_GOLDENS=1 in the environment accepts what a test draws.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "support/bitmap.hpp"

namespace render::testing {

using support::Bitmap;
using support::Pixel;
using support::readPng;

/// Success if the file `name` (below tests/goldens/) holds the same picture: of the same size, with at most one in two
/// hundred pixels clearly different, since letters differ slightly between versions of the font library.
::testing::AssertionResult matchesGoldenPicture(const std::string& name, const std::string& file);

}  // namespace render::testing
