#include "render/type/visible_text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace render {
namespace {

constexpr std::size_t mostInLine = 600;    ///< characters; more than the narrowest letters fill in the widest line
constexpr std::size_t mostInText = 16384;  ///< characters
constexpr std::string_view replacement = "\uFFFD";
constexpr std::string_view ellipsis = "\u2026";

struct Character {
  char32_t code = 0;
  std::size_t bytes = 1;
  bool valid = false;
};

/// The first character of `text`; an invalid byte is one invalid character.
Character firstCharacter(std::string_view text) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byteAt(0);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
  char32_t code = static_cast<char32_t>(lead) & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(i) & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (static_cast<char32_t>(byteAt(i)) & 0x3FU);
  }
  constexpr char32_t leastOf[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < leastOf[length] || code > 0x10FFFF || surrogate) return {};
  return {code, length, true};
}

bool endsLine(char32_t code) {
  return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

bool isControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

/// Code points that never stand for a character. XML forbids some of them.
bool isNoncharacter(char32_t code) { return (code & 0xFFFEU) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF); }

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
    const auto character = firstCharacter(text);
    const auto bytes = text.substr(0, character.bytes);
    text.remove_prefix(character.bytes);
    if (!character.valid || isNoncharacter(character.code)) {
      visible += replacement;
    } else if (endsLine(character.code)) {
      if (character.code == '\r' && text.starts_with('\n')) text.remove_prefix(1);
      visible += maxLines == 1 ? " " : lineSeparator;
    } else if (character.code == '\t') {
      visible += ' ';
    } else if (!isControl(character.code)) {
      visible += bytes;
    }
  }
  return visible;
}

}  // namespace render
