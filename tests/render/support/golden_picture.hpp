// Pictures compared with reviewed ones below tests/goldens/, with a small tolerance; and the reading of pictures.
// VAMBA_ACCEPT_GOLDENS=1 in the environment accepts what a test draws.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace render::testing {

struct Pixel {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t opacity = 0;
  bool operator==(const Pixel&) const = default;
};

struct Bitmap {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<Pixel> pixels;

  const Pixel& at(std::uint32_t x, std::uint32_t y) const { return pixels[std::size_t{y} * width + x]; }
};

/// Empty where the bytes are no PNG.
Bitmap readPng(const std::string& file);

/// Success where the file `name` (below tests/goldens/) holds the same picture: of one size, and all but one in two
/// hundred pixels nearly equal, for letters come out a shade different with another version of the font library.
::testing::AssertionResult matchesGoldenPicture(const std::string& name, const std::string& file);

}  // namespace render::testing
