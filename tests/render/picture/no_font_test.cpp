#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"
#include "render/picture/picture.hpp"

namespace render {
namespace {

TEST(PictureWithoutFonts, IsAnErrorInEveryFormat) {
  const auto path = std::filesystem::path(::testing::TempDir()) / "no_fonts.conf";
  std::ofstream(path)
      << "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\"><fontconfig/>";
  setenv("FONTCONFIG_FILE", path.c_str(), 1);
  const protocol::Node tree = protocol::Text("Vamba");
  for (const auto draw : {drawPng, drawSvg, drawPdf}) {
    const auto picture = draw(tree, {});
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error(), PictureError::noFont);
  }
  EXPECT_EQ(describe(PictureError::noFont), "no font is installed");
}

}  // namespace
}  // namespace render
