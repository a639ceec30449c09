#include "render/picture_library/picture_library.hpp"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "render/picture_library/picture_in_preparation.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;
using ::testing::HasSubstr;

std::string programsLoadedLibraries() {
  std::ifstream maps("/proc/self/maps");
  return {std::istreambuf_iterator<char>(maps), std::istreambuf_iterator<char>()};
}

TEST(PictureLibrary, DrawsEveryFormatAndLoadsTheLibrariesOnlyThen) {
  ASSERT_THAT(programsLoadedLibraries(), ::testing::Not(HasSubstr("libpango")));
  const auto library = PictureLibrary::open(VAMBA_PICTURE_MODULE);
  ASSERT_TRUE(library) << library.error();
  EXPECT_THAT(programsLoadedLibraries(), HasSubstr("libpango"));
  library->loadFonts("pl");
  const auto tree = board(sampleContent(State::full, Language::polish, 3), Family::medium);
  EXPECT_TRUE(library->drawPng(tree, {}).value().starts_with("\x89PNG"));
  EXPECT_TRUE(library->drawSvg(tree, {}).value().starts_with("<svg"));
  EXPECT_TRUE(library->drawPdf(tree, {}).value().starts_with("%PDF"));
  EXPECT_EQ(library->drawPng(tree, {.scale = 0}).error(), PictureError::scaleOutOfRange);
}

TEST(PictureLibrary, SaysWhyThereIsNone) {
  const auto missing = PictureLibrary::open("/nonexistent/vamba-pictures.so");
  ASSERT_FALSE(missing);
  EXPECT_THAT(missing.error(), HasSubstr("/nonexistent/vamba-pictures.so"));
  const auto other = PictureLibrary::open("libm.so.6");
  ASSERT_FALSE(other);
  EXPECT_EQ(other.error(), "the picture module libm.so.6 is of another version");
}

TEST(PictureInPreparation, IsThePictureThatTheLibraryDraws) {
  const auto tree = board(sampleContent(State::full, Language::polish, 3), Family::medium);
  PictureInPreparation prepared(VAMBA_PICTURE_MODULE, "pl");
  const auto picture = prepared.finish(&PictureLibrary::drawPng, tree, {.language = "pl"});
  ASSERT_TRUE(picture) << picture.error();
  EXPECT_TRUE(*picture == PictureLibrary::open(VAMBA_PICTURE_MODULE)->drawPng(tree, {.language = "pl"}).value());
}

TEST(PictureInPreparation, MayBeGivenUp) { const PictureInPreparation prepared(VAMBA_PICTURE_MODULE, "pl"); }

TEST(PictureInPreparation, SaysWhyThereIsNone) {
  const protocol::Node tree{.kind = protocol::SpacerNode{}};
  PictureInPreparation missing("/nonexistent/vamba-pictures.so", "pl");
  EXPECT_THAT(missing.finish(&PictureLibrary::drawPng, tree, {}).error(), HasSubstr("/nonexistent/"));
  PictureInPreparation outOfRange(VAMBA_PICTURE_MODULE, "");
  EXPECT_EQ(outOfRange.finish(&PictureLibrary::drawSvg, tree, {.scale = 0}).error(),
            "can't draw the picture: the scale is out of range");
}

TEST(PictureModulePath, IsBesideTheProgramOrInLibexec) {
  const auto root = std::filesystem::path(::testing::TempDir()) / ("modules-" + std::to_string(::getpid()));
  const auto make = [&](const std::filesystem::path& folder) {
    std::filesystem::create_directories(root / folder);
    std::ofstream(root / folder / "vamba-pictures.so") << "x";
  };
  std::filesystem::create_directories(root / "usr" / "bin");
  std::filesystem::create_directories(root / "build" / "src" / "host");
  make("usr/libexec/vamba");
  make("build/libexec/vamba");
  const auto found = [&](const std::string& folder) {
    return std::filesystem::weakly_canonical(pictureModulePath(root / folder));
  };
  EXPECT_EQ(found("usr/bin"), std::filesystem::canonical(root) / "usr/libexec/vamba/vamba-pictures.so");
  EXPECT_EQ(found("build/src/host"), std::filesystem::canonical(root) / "build/libexec/vamba/vamba-pictures.so");
  make("usr/bin");
  EXPECT_EQ(found("usr/bin"), std::filesystem::canonical(root) / "usr/bin/vamba-pictures.so");
  std::filesystem::remove_all(root);
}

}  // namespace
}  // namespace render
