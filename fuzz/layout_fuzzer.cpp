// Any view tree that an extension may send is laid out within its box, without overlaps and at 70 % or more of its
// size. The first byte chooses the form; the rest is a tree as JSON, or else the bytes of a title.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "any_tree.hpp"
#include "render/layout/layout.hpp"
#include "render/support/layout_text.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr render::BoardForm forms[] = {render::smallFamily, render::mediumFamily, render::largeFamily, {{17, 9}}};
  const auto& form = forms[data[0] % 4];
  const protocol::Node tree = fuzz::treeOrTitles({reinterpret_cast<const char*>(data) + 1, size - 1});
  render::testing::PlainMeasurer measurer;
  const auto board = render::layOut(tree, form, measurer);
  if (!render::testing::layoutFaults(board).empty()) std::abort();
  if (board.magnification != form.magnification) std::abort();
  return 0;
}
