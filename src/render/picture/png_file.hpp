// Pixels as the bytes of a PNG file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace render {

/// Pixels of 32 bits in the machine's byte order: opacity, red, green, blue from the highest byte down, the colours
/// multiplied by the opacity. Rows follow each other every `stride` bytes.
struct Pixels {
  const unsigned char* rows = nullptr;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::size_t stride = 0;
};

/// An sRGB picture with `scale` pixels a point (a 72nd of an inch), and no date or author, so that equal pixels give
/// equal bytes. Compressed for speed: boards are mostly of one colour. None where the library refuses.
std::optional<std::string> pngFile(const Pixels& pixels, double scale);

}  // namespace render
