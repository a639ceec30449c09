// The typeface of each text style: sizes in points, weights as fonts number them.
#pragma once

#include "protocol/view_tree/node.hpp"

namespace render {

/// Inter has real medium and semibold weights and every letter of the widget's languages; the second is whatever the
/// system prefers, and after both every installed font is tried for a letter that they lack.
inline constexpr const char* fontFamilies = "Inter,sans-serif";

struct TypeStyle {
  double size = 0;
  int weight = 400;
  bool operator==(const TypeStyle&) const = default;
};

constexpr TypeStyle typeStyle(const protocol::TextNode& text) {
  TypeStyle style;
  switch (text.font) {
    case protocol::TextStyle::headline:
      style = {15, 600};
      break;
    case protocol::TextStyle::caption:
      style = {12, 400};
      break;
    case protocol::TextStyle::caption2:
      style = {11, 400};
      break;
  }
  if (!text.weight) return style;
  switch (*text.weight) {
    case protocol::FontWeight::regular:
      style.weight = 400;
      break;
    case protocol::FontWeight::medium:
      style.weight = 500;
      break;
    case protocol::FontWeight::semibold:
      style.weight = 600;
      break;
  }
  return style;
}

}  // namespace render
