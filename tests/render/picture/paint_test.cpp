#include "render/picture/paint.hpp"

#include <cstring>

#include <gtest/gtest.h>

#include "render/picture/surface.hpp"
#include "render/support/golden_picture.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;

TEST(Paint, WithSeveralPixelsAPointIsThePictureAtThatScale) {
  const auto tree = board(sampleContent(State::full, Language::polish, 12), Family::medium);
  const OwnedSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 960, 640));
  const OwnedCairo cairo(cairo_create(surface.get()));
  auto drawing = prepare(tree, {});
  ASSERT_TRUE(drawing);
  paint(cairo.get(), *drawing, {.form = mediumFamily, .pixels = 2});
  cairo_surface_flush(surface.get());

  const auto expected = readPng(*drawPng(tree, {.scale = 2}));
  const auto* rows = cairo_image_surface_get_data(surface.get());
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  for (std::uint32_t y = 0; y < expected.height; ++y) {
    for (std::uint32_t x = 60; x < expected.width - 60; ++x) {
      std::uint32_t pixel = 0;
      std::memcpy(&pixel, rows + y * stride + std::size_t{x} * 4, sizeof pixel);
      const auto& wanted = expected.at(x, y);
      ASSERT_EQ(pixel, 0xFF000000U | static_cast<std::uint32_t>(wanted.red) << 16U |
                           static_cast<std::uint32_t>(wanted.green) << 8U | wanted.blue)
          << x << "," << y;
    }
  }
}

TEST(Paint, LeavesTheCallersStateAsItWas) {
  const OwnedSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 480, 240));
  const OwnedCairo cairo(cairo_create(surface.get()));
  cairo_scale(cairo.get(), 0.5, 0.5);
  auto drawing = prepare(board(sampleContent(State::empty, Language::polish, 1), Family::medium), {});
  ASSERT_TRUE(drawing);
  paint(cairo.get(), *drawing, {.form = mediumFamily});
  cairo_matrix_t matrix;
  cairo_get_matrix(cairo.get(), &matrix);
  EXPECT_EQ(matrix.xx, 0.5);
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  cairo_clip_extents(cairo.get(), &left, &top, &right, &bottom);
  EXPECT_EQ(right, 960);
  EXPECT_EQ(bottom, 480);
}

}  // namespace
}  // namespace render
