#include "render/picture/png_file.hpp"

#include <cmath>
#include <csetjmp>
#include <cstring>
#include <vector>

#include <png.h>

namespace render {
namespace {

void append(png_structp png, png_bytep bytes, png_size_t count) noexcept {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(bytes), count);
}

void nothingToFlush(png_structp) noexcept {}
void keepSilent(png_structp, png_const_charp) noexcept {}

/// The pixel without premultiplied opacity, as red, green, blue, opacity from the highest byte down.
std::uint32_t unmultiplied(std::uint32_t pixel) {
  const std::uint32_t opacity = pixel >> 24U;
  if (opacity == 0) return 0;
  const auto channel = [&](unsigned shift) { return ((pixel >> shift & 0xFFU) * 255 + opacity / 2) / opacity; };
  return channel(16) << 24U | channel(8) << 16U | channel(0) << 8U | opacity;
}

/// Converts a row to the byte order of the file: red, green, blue, opacity.
void unpack(const unsigned char* row, std::uint32_t width, unsigned char* out) {
  for (std::uint32_t x = 0; x < width; ++x, row += 4, out += 4) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row, sizeof pixel);
    const bool opaque = pixel >= 0xFF000000U;
    const std::uint32_t ordered = opaque ? pixel << 8U | 0xFFU : unmultiplied(pixel);
    out[0] = static_cast<unsigned char>(ordered >> 24U);
    out[1] = static_cast<unsigned char>(ordered >> 16U);
    out[2] = static_cast<unsigned char>(ordered >> 8U);
    out[3] = static_cast<unsigned char>(ordered);
  }
}

/// The library reports errors by longjmp, which runs no destructors, so everything that owns memory is in the caller.
bool write(png_structp png, png_infop info, const Pixels& pixels, double scale, std::vector<unsigned char>& row) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  png_set_compression_level(png, 1);
  png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
  png_set_IHDR(png, info, pixels.width, pixels.height, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_sRGB(png, info, PNG_sRGB_INTENT_RELATIVE);
  const auto perMetre = static_cast<png_uint_32>(std::lround(scale * 72 / 0.0254));
  png_set_pHYs(png, info, perMetre, perMetre, PNG_RESOLUTION_METER);
  png_write_info(png, info);
  for (std::uint32_t y = 0; y < pixels.height; ++y) {
    unpack(pixels.rows + y * pixels.stride, pixels.width, row.data());
    png_write_row(png, row.data());
  }
  png_write_end(png, nullptr);
  return true;
}

}  // namespace

std::optional<std::string> pngFile(const Pixels& pixels, double scale) {
  std::string file;
  file.reserve(std::size_t{64} << 10U);
  std::vector<unsigned char> row(std::size_t{pixels.width} * 4);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, keepSilent);
  if (png == nullptr) return std::nullopt;
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, &file, append, nothingToFlush);
  const bool written = info != nullptr && write(png, info, pixels, scale, row);
  png_destroy_write_struct(&png, &info);
  if (!written) return std::nullopt;
  return file;
}

}  // namespace render
