#include "render/support/random_trees.hpp"

#include <gtest/gtest.h>

#include "protocol/view_tree/node_json.hpp"
#include "render/layout/family_form.hpp"
#include "render/support/layout_text.hpp"

namespace render {
namespace {

using render::testing::PlainMeasurer;
using render::testing::randomTree;

TEST(LayoutOfRandomTrees, NothingOverlapsAndNothingLeavesTheBox) {
  PlainMeasurer measurer;
  std::size_t painted = 0;
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    const auto tree = randomTree(seed);
    for (const BoardForm& form : {smallFamily, mediumFamily, largeFamily, BoardForm{{17, 9}}}) {
      const auto board = layOut(tree, form, measurer);
      painted += board.items.size();
      EXPECT_EQ(board.magnification, form.magnification);
      const auto faults = render::testing::layoutFaults(board);
      ASSERT_EQ(faults, "") << "seed " << seed << "\n" << protocol::toJson(tree).dump(1);
    }
  }
  EXPECT_GT(painted, 20000U) << "the trees leave next to nothing to check";
}

TEST(LayoutOfRandomTrees, NestingWithoutEndIsCutAndCostsLittle) {
  PlainMeasurer measurer;
  protocol::Node node{.kind = protocol::TextNode{.content = protocol::Verbatim{"deep"}}};
  for (int i = 0; i < 2000; ++i) {
    protocol::HStackNode row;
    row.children.push_back({.kind = protocol::SpacerNode{}});
    row.children.push_back(std::move(node));
    node = {.kind = std::move(row)};
  }
  EXPECT_EQ(render::testing::layoutFaults(layOut(node, mediumFamily, measurer)), "");
}

}  // namespace
}  // namespace render
