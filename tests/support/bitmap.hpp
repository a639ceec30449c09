// Pictures as tests look at them: read from a PNG or from a screen, cut out, compared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace support {

struct Pixel {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t opacity = 0;
  bool operator==(const Pixel&) const = default;
};

inline constexpr Pixel red{255, 0, 0, 255};

struct Bitmap {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<Pixel> pixels;

  const Pixel& at(std::uint32_t x, std::uint32_t y) const { return pixels[std::size_t{y} * width + x]; }
  bool operator==(const Bitmap&) const = default;
};

/// Of one colour.
inline Bitmap filled(std::uint32_t width, std::uint32_t height, Pixel pixel) {
  return {width, height, std::vector<Pixel>(std::size_t{width} * height, pixel)};
}

/// Empty where the bytes are no PNG.
Bitmap readPng(const std::string& file);
/// The bytes of a PNG file.
std::string writePng(const Bitmap& bitmap);

/// The part that lies in the bitmap; what is beyond its edges is left out.
Bitmap crop(const Bitmap& bitmap, std::int64_t x, std::int64_t y, std::uint32_t width, std::uint32_t height);

/// How different two bitmaps may be and still show the same: each channel by so much of 255, and one pixel in so many
/// by more. The default is for letters, which come out a shade different with another version of the font library.
struct Tolerance {
  int channel = 24;
  std::size_t oneMayDiffer = 200;
};

/// Pixels that differ by more than a channel's tolerance; all of them where the sizes differ.
std::size_t differingPixels(const Bitmap& one, const Bitmap& other, int channelTolerance);

/// Success where both show the same. Else both are kept for a person to see, as `name`-shown.png and
/// `name`-expected.png in the build folder's drawn_pictures/.
testing::AssertionResult showsTheSame(const Bitmap& shown, const Bitmap& expected, const std::string& name,
                                      const Tolerance& tolerance = {});

}  // namespace support
