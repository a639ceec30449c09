#include <gtest/gtest.h>

#include "render/layout/family_form.hpp"
#include "render/layout/geometry.hpp"

namespace render {
namespace {

TEST(Snapping, NeighboursShareAnEdgeAtEveryScale) {
  for (const double pixels : {1.0, 1.25, 1.5, 2.0, 3.0, 0.784 * 1.25}) {
    double top = 0.37;
    for (int row = 0; row < 50; ++row) {
      const Rect one{0.3, top, 10.7, 13.31};
      const Rect next{0.3, one.bottom(), 10.7, 13.31};
      EXPECT_EQ(snapped(one, pixels).bottom(), snapped(next, pixels).y) << pixels << " row " << row;
      top = next.y;
    }
  }
}

TEST(Snapping, RuleIsEquallyThickWhereverItLies) {
  const struct {
    double pixels;
    double thickness;
  } cases[] = {{0.75, 1}, {1, 1}, {1.25, 1}, {1.5, 1}, {2, 2}, {3, 3}};
  for (const auto& [pixels, thickness] : cases) {
    for (int i = 0; i < 40; ++i) {
      const Rect device = snappedRule({12, 30 + i * 0.13, 200, 1}, pixels);
      EXPECT_EQ(device.height, thickness) << pixels << " at " << i;
      EXPECT_EQ(device.y, std::round(device.y));
    }
  }
}

TEST(FamilyForm, BoardsBesideAndBelowEachOtherEndFlush) {
  const Size& small = smallFamily.size;
  const Size& medium = mediumFamily.size;
  EXPECT_EQ(medium, (Size{2 * small.width + boardGap, 2 * small.height + boardGap}));
  EXPECT_EQ(largeFamily.size, (Size{medium.width, medium.height + boardGap + small.height}));
  EXPECT_EQ(familyForm(protocol::WidgetFamily::systemSmall), smallFamily);
  EXPECT_EQ(familyForm(protocol::WidgetFamily::systemMedium), mediumFamily);
  EXPECT_EQ(familyForm(protocol::WidgetFamily::systemLarge), largeFamily);
}

}  // namespace
}  // namespace render
