// Any view tree that an extension may send is laid out within its box, without overlaps and at 70 % or more of its
// size. The first byte chooses the form; the rest is a tree as JSON, or else the bytes of a title.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "protocol/view_tree/builders.hpp"
#include "protocol/view_tree/node_json.hpp"
#include "render/layout/layout.hpp"
#include "render/support/layout_text.hpp"

namespace {

using namespace protocol;

Node treeOf(std::string_view bytes) {
  // As deep as the host lets an answer be.
  const auto callback = [](int depth, nlohmann::json::parse_event_t, nlohmann::json&) { return depth <= 512; };
  const auto json = nlohmann::json::parse(bytes, callback, false);
  if (!json.is_discarded()) {
    if (auto tree = nodeFromJson(json)) return std::move(*tree);
  }
  const std::string title(bytes);
  return VStack({}, {HStack({}, {Text(title).lineLimit(1), Spacer(), Text(title)}), Text(title)}).padding(12);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr render::BoardForm forms[] = {render::smallFamily, render::mediumFamily, render::largeFamily, {{17, 9}}};
  const auto& form = forms[data[0] % 4];
  const Node tree = treeOf({reinterpret_cast<const char*>(data) + 1, size - 1});
  render::testing::PlainMeasurer measurer;
  const auto board = render::layOut(tree, form, measurer);
  if (!render::testing::layoutFaults(board).empty()) std::abort();
  if (board.magnification != form.magnification) std::abort();
  return 0;
}
