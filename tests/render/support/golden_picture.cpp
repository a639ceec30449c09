#include "render/support/golden_picture.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

#include <png.h>

namespace render::testing {
namespace {

constexpr int nearlyEqual = 24;            ///< of 255, in any channel
constexpr std::size_t oneMayDiffer = 200;  ///< in so many pixels

bool differ(const Pixel& one, const Pixel& other) {
  const auto far = [](int a, int b) { return std::abs(a - b) > nearlyEqual; };
  return far(one.red, other.red) || far(one.green, other.green) || far(one.blue, other.blue) ||
         far(one.opacity, other.opacity);
}

::testing::AssertionResult write(const std::filesystem::path& path, const std::string& bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  if (file) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "cannot write " << path;
}

}  // namespace

Bitmap readPng(const std::string& file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) return {};
  image.format = PNG_FORMAT_RGBA;
  Bitmap bitmap{image.width, image.height, std::vector<Pixel>(std::size_t{image.width} * image.height)};
  static_assert(sizeof(Pixel) == 4);
  if (png_image_finish_read(&image, nullptr, bitmap.pixels.data(), 0, nullptr) == 0) return {};
  return bitmap;
}

::testing::AssertionResult matchesGoldenPicture(const std::string& name, const std::string& file) {
  const std::filesystem::path path = std::filesystem::path(VAMBA_GOLDENS) / name;
  const char* accept = std::getenv("VAMBA_ACCEPT_GOLDENS");
  if (accept != nullptr && std::string_view(accept) == "1") return write(path, file);

  std::ostringstream bytes;
  if (std::ifstream golden(path, std::ios::binary); golden) bytes << golden.rdbuf();
  const auto expected = readPng(bytes.str());
  const auto drawn = readPng(file);
  std::size_t differing = 0;
  const bool sameSize = expected.width == drawn.width && expected.height == drawn.height && drawn.width > 0;
  if (sameSize) {
    for (std::size_t i = 0; i < drawn.pixels.size(); ++i) {
      if (differ(drawn.pixels[i], expected.pixels[i])) ++differing;
    }
    if (differing * oneMayDiffer <= drawn.pixels.size()) return ::testing::AssertionSuccess();
  }
  const std::filesystem::path shown = std::filesystem::path(VAMBA_DRAWN_PICTURES) / name;
  write(shown, file);
  return ::testing::AssertionFailure() << path << (expected.width == 0 ? " is missing" : " differs") << " in "
                                       << (sameSize ? std::to_string(differing) + " pixels" : "size") << "; drawn was "
                                       << shown << "; VAMBA_ACCEPT_GOLDENS=1 accepts it";
}

}  // namespace render::testing
