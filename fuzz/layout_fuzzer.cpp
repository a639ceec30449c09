// Any view tree that an extension may send is laid out within its box, without overlaps and at the form's own size.
// The first byte chooses the form; the rest is a tree as JSON, or else the bytes of a title.
#include <cstdint>
#include <string>
#include <string_view>

#include "any_tree.hpp"
#include "render/layout/layout.hpp"
#include "render/support/layout_text.hpp"
#include "require.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr render::BoardForm forms[] = {render::smallFamily, render::mediumFamily, render::largeFamily, {{17, 9}}};
  const auto& form = forms[data[0] % 4];
  const protocol::Node tree = fuzz::treeOrTitles({reinterpret_cast<const char*>(data) + 1, size - 1});
  render::testing::PlainMeasurer measurer;
  const auto board = render::layOut(tree, form, measurer);
  fuzz::require(render::testing::layoutFaults(board).empty());
  fuzz::require(board.magnification == form.magnification);
  return 0;
}
