// What layout asks of the fonts. The one that draws answers with real fonts; tests answer with figures they can
// reckon in their head.
#pragma once

#include <limits>
#include <optional>

#include "protocol/view_tree/node.hpp"
#include "render/layout/geometry.hpp"

namespace render {

/// The room of a text, in points; the baseline is that of its first line, from its top.
struct TextExtent {
  Size size;
  double firstBaseline = 0;
  int lines = 0;
  bool operator==(const TextExtent&) const = default;
};

inline constexpr int unlimitedLines = std::numeric_limits<int>::max();

class TextMeasurer {
 public:
  virtual ~TextMeasurer() = default;

  /// The text with no line broken but where it says so itself.
  virtual TextExtent natural(const protocol::TextNode& text) = 0;

  /// The text in lines no wider than `width`, at most `maxLines` of them, the last ending in an ellipsis where text is
  /// left over. None where not even an ellipsis fits.
  virtual std::optional<TextExtent> within(const protocol::TextNode& text, double width, int maxLines) = 0;

 protected:
  TextMeasurer() = default;
  TextMeasurer(const TextMeasurer&) = default;
  TextMeasurer& operator=(const TextMeasurer&) = default;
};

}  // namespace render
