// Encodes pixels as a PNG file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace render {

/// Pixels of 32 bits in the machine's byte order: opacity, red, green, blue from the highest byte down, with
/// premultiplied opacity. Each row begins `stride` bytes after the previous one.
struct Pixels {
  const unsigned char* rows = nullptr;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::size_t stride = 0;
};

/// An sRGB picture with `scale` pixels a point (1/72 inch). It contains no date or author, so equal pixels give equal
/// bytes. The compression is the fastest, which suffices for boards. None if the library fails.
std::optional<std::string> pngFile(const Pixels& pixels, double scale);

}  // namespace render
