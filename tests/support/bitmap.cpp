#include "support/bitmap.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <png.h>

namespace support {
namespace {

static_assert(sizeof(Pixel) == 4);

bool differ(const Pixel& one, const Pixel& other, int tolerance) {
  const auto far = [tolerance](int a, int b) { return std::abs(a - b) > tolerance; };
  return far(one.red, other.red) || far(one.green, other.green) || far(one.blue, other.blue) ||
         far(one.opacity, other.opacity);
}

void keep(const std::filesystem::path& path, const Bitmap& bitmap) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary | std::ios::trunc) << writePng(bitmap);
}

std::string sizeOf(const Bitmap& bitmap) { return std::to_string(bitmap.width) + "x" + std::to_string(bitmap.height); }

}  // namespace

Bitmap readPng(const std::string& file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) return {};
  image.format = PNG_FORMAT_RGBA;
  Bitmap bitmap{image.width, image.height, std::vector<Pixel>(std::size_t{image.width} * image.height)};
  if (png_image_finish_read(&image, nullptr, bitmap.pixels.data(), 0, nullptr) == 0) return {};
  return bitmap;
}

std::string writePng(const Bitmap& bitmap) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = bitmap.width;
  image.height = bitmap.height;
  image.format = PNG_FORMAT_RGBA;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string file(size, '\0');
  if (png_image_write_to_memory(&image, file.data(), &size, 0, bitmap.pixels.data(), 0, nullptr) == 0) return {};
  file.resize(size);
  return file;
}

Bitmap crop(const Bitmap& bitmap, std::int64_t x, std::int64_t y, std::uint32_t width, std::uint32_t height) {
  const auto left = std::clamp<std::int64_t>(x, 0, bitmap.width);
  const auto top = std::clamp<std::int64_t>(y, 0, bitmap.height);
  const auto right = std::clamp<std::int64_t>(x + width, left, bitmap.width);
  const auto bottom = std::clamp<std::int64_t>(y + height, top, bitmap.height);
  Bitmap result{static_cast<std::uint32_t>(right - left), static_cast<std::uint32_t>(bottom - top), {}};
  for (auto row = top; row < bottom; ++row) {
    const auto begin = bitmap.pixels.begin() + row * bitmap.width;
    result.pixels.insert(result.pixels.end(), begin + left, begin + right);
  }
  return result;
}

std::size_t differingPixels(const Bitmap& one, const Bitmap& other, int channelTolerance) {
  if (one.width != other.width || one.height != other.height) return std::max(one.pixels.size(), other.pixels.size());
  std::size_t differing = 0;
  for (std::size_t i = 0; i < one.pixels.size(); ++i) {
    if (differ(one.pixels[i], other.pixels[i], channelTolerance)) ++differing;
  }
  return differing;
}

testing::AssertionResult showsTheSame(const Bitmap& shown, const Bitmap& expected, const std::string& name,
                                      const Tolerance& tolerance) {
  const auto differing = differingPixels(shown, expected, tolerance.channel);
  const bool sameSize = shown.width == expected.width && shown.height == expected.height && !shown.pixels.empty();
  if (sameSize && differing * tolerance.oneMayDiffer <= shown.pixels.size()) return testing::AssertionSuccess();
  const std::filesystem::path folder = VAMBA_DRAWN_PICTURES;
  keep(folder / (name + "-shown.png"), shown);
  keep(folder / (name + "-expected.png"), expected);
  return testing::AssertionFailure() << name << ": " << differing << " of " << shown.pixels.size()
                                     << " pixels differ; shown is " << sizeOf(shown) << ", expected "
                                     << sizeOf(expected) << "; see " << folder / (name + "-shown.png");
}

}  // namespace support
