// The interface by which layout measures texts. The typesetter implements it with real fonts, tests with fixed figures.
#pragma once

#include <limits>
#include <optional>

#include "protocol/view_tree/node.hpp"
#include "render/layout/geometry.hpp"

namespace render {

/// The size of a text in points; the baseline is its first line's, from its top.
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

  /// The extent of the text with line breaks only where the text contains them.
  virtual TextExtent natural(const protocol::TextNode& text) = 0;

  /// The extent of the text in at most `maxLines` lines of at most `width`; the last line ends in an ellipsis if text
  /// is left over. None if not even an ellipsis fits.
  virtual std::optional<TextExtent> within(const protocol::TextNode& text, double width, int maxLines) = 0;

 protected:
  TextMeasurer() = default;
  TextMeasurer(const TextMeasurer&) = default;
  TextMeasurer& operator=(const TextMeasurer&) = default;
};

}  // namespace render
