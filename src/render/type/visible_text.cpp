#include "render/type/visible_text.hpp"

#include <algorithm>
#include <cstddef>

#include "base/text/control_characters.hpp"
#include "base/text/utf8.hpp"

namespace render {
namespace {

constexpr std::size_t mostInLine = 600;    ///< characters; more than the narrowest letters fill in the widest line
constexpr std::size_t mostInText = 16384;  ///< characters
constexpr std::string_view replacement = "\uFFFD";
constexpr std::string_view ellipsis = "\u2026";

bool endsLine(char32_t code) {
  return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

}  // namespace

std::string visibleText(std::string_view text, int maxLines) {
  const std::size_t most = std::min(mostInText, mostInLine * static_cast<std::size_t>(std::clamp(maxLines, 1, 100)));
  std::string visible;
  visible.reserve(std::min(text.size(), 4 * most));
  for (std::size_t count = 0; !text.empty(); ++count) {
    if (count == most) {
      visible += ellipsis;
      break;
    }
    const std::string_view before = text;
    const auto character = base::takeValidCharacter(text);
    if (!character || base::isNoncharacter(*character)) {
      visible += replacement;
    } else if (endsLine(*character)) {
      if (*character == '\r' && text.starts_with('\n')) text.remove_prefix(1);
      visible += maxLines == 1 ? " " : lineSeparator;
    } else if (*character == '\t') {
      visible += ' ';
    } else if (!base::isControl(*character)) {
      visible += before.substr(0, before.size() - text.size());
    }
  }
  return visible;
}

}  // namespace render
