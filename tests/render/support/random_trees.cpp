#include "render/support/random_trees.hpp"

#include <array>
#include <iterator>
#include <limits>
#include <random>
#include <string>

namespace render::testing {
namespace {

using namespace protocol;

const std::array<std::string, 16> texts{
    "",
    "a",
    "Vamba",
    "Wysłać wniosek grantowy",
    "שלום עולם",
    "مرحبا بالعالم 123",
    "mixed שלום and مرحبا",
    "line one\nline two\r\nline three",
    "\x1b[31mred\x1b[0m",
    "wide\tand\vodd\fcontrols\x01\x7f",
    "\xff\xfe broken \xc3",
    "Z\xcc\x8d\xcc\x8e\xcc\x84\xcc\x85\xcc\xbf\xcc\x91\xcc\x86\xcc\x90\xcc\x92\xcc\x97\xcc\x98\xcc\x99",
    "日本語の文章と漢字",
    "\xe2\x80\xae"
    "override",
    "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x91\xa7 family",
    std::string(400, 'm')};

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  Node node(int depth) {
    Node result;
    switch (below(depth > 0 ? 7 : 4)) {
      case 0:
        result.kind = SpacerNode{length()};
        break;
      case 1:
        result.kind = DividerNode{};
        break;
      case 2:
      case 3:
        result.kind = text();
        break;
      case 4:
      case 5:
        result.kind = VStackNode{HorizontalAlignment::leading, spacing(), children(depth)};
        break;
      default:
        result.kind = HStackNode{chance(2) ? VerticalAlignment::center : VerticalAlignment::firstTextBaseline,
                                 spacing(), children(depth)};
    }
    if (chance(4)) result.padding = EdgeInsets{length(), length(), length(), length()};
    if (chance(6)) result.background = CapsuleBackground{.fill = style(), .opacity = 0.3};
    return result;
  }

 private:
  std::size_t below(std::size_t count) { return random_() % count; }
  bool chance(std::size_t oneIn) { return below(oneIn) == 0; }

  double length() {
    static constexpr double lengths[] = {0, 1, 6, 12, 6.5, 40, 300, -5, 1e9, 1e300, -1e300};
    // Most lengths are reasonable, since otherwise nothing would be shown.
    return chance(8) ? lengths[below(std::size(lengths))] : lengths[below(5)];
  }

  std::optional<double> spacing() { return chance(3) ? std::nullopt : std::optional(length()); }
  ForegroundStyle style() { return static_cast<ForegroundStyle>(below(5)); }

  TextNode text() {
    TextNode result{.content = Verbatim{texts[below(texts.size())]}};
    result.font = static_cast<TextStyle>(below(3));
    if (chance(2)) result.weight = static_cast<FontWeight>(below(3));
    result.monospacedDigits = chance(2);
    result.style = style();
    if (chance(2)) result.lineLimit = static_cast<int>(1 + below(3));
    return result;
  }

  std::vector<Node> children(int depth) {
    std::vector<Node> nodes(chance(6) ? below(20) : below(5));
    for (auto& child : nodes) child = node(depth - 1);
    return nodes;
  }

  std::mt19937_64 random_;
};

}  // namespace

Node randomTree(std::uint64_t seed) {
  Generator generator(seed);
  Node root = generator.node(5);
  root.containerBackground = ContainerBackground::background;
  return root;
}

}  // namespace render::testing
