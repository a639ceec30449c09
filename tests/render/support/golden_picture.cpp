#include "render/support/golden_picture.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

namespace render::testing {
namespace {

constexpr support::Tolerance tolerance;

::testing::AssertionResult write(const std::filesystem::path& path, const std::string& bytes) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  if (file) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "cannot write " << path;
}

}  // namespace

::testing::AssertionResult matchesGoldenPicture(const std::string& name, const std::string& file) {
  const std::filesystem::path path = std::filesystem::path(VAMBA_GOLDENS) / name;
  const char* accept = std::getenv("VAMBA_ACCEPT_GOLDENS");
  if (accept != nullptr && std::string_view(accept) == "1") return write(path, file);

  std::ostringstream bytes;
  if (std::ifstream golden(path, std::ios::binary); golden) bytes << golden.rdbuf();
  const auto expected = readPng(bytes.str());
  const auto drawn = readPng(file);
  const auto differing = support::differingPixels(drawn, expected, tolerance.channel);
  const bool sameSize = expected.width == drawn.width && expected.height == drawn.height && drawn.width > 0;
  if (sameSize && differing * tolerance.oneMayDiffer <= drawn.pixels.size()) return ::testing::AssertionSuccess();
  const std::filesystem::path shown = std::filesystem::path(VAMBA_DRAWN_PICTURES) / name;
  write(shown, file);
  return ::testing::AssertionFailure() << path << (expected.width == 0 ? " is missing" : " differs") << " in "
                                       << (sameSize ? std::to_string(differing) + " pixels" : "size") << "; drawn was "
                                       << shown << "; VAMBA_ACCEPT_GOLDENS=1 accepts it";
}

}  // namespace render::testing
