#include "base/text/utf8.hpp"

#include <algorithm>
#include <cstddef>

#include <utf8proc.h>

namespace base {
namespace {

struct Character {
  utf8proc_int32_t codePoint = -1;
  utf8proc_ssize_t length = 0;  ///< in bytes; 0 or less where the bytes begin no character
};

Character characterInFront(std::string_view bytes) {
  Character character;
  character.length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()),
                                      static_cast<utf8proc_ssize_t>(bytes.size()), &character.codePoint);
  return character;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Character character = characterInFront(bytes);
    if (character.length <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(character.length));
  }
  return true;
}

char32_t takeCharacter(std::string_view& text) {
  const auto byte = static_cast<unsigned char>(text.front());
  return takeValidCharacter(text).value_or(byte);
}

std::optional<char32_t> takeValidCharacter(std::string_view& text) {
  // Most of a text is ASCII.
  if (const auto byte = static_cast<unsigned char>(text.front()); byte < 0x80) {
    text.remove_prefix(1);
    return byte;
  }
  const Character character = characterInFront(text);
  text.remove_prefix(static_cast<std::size_t>(std::max<utf8proc_ssize_t>(character.length, 1)));
  if (character.length <= 0) return std::nullopt;
  return static_cast<char32_t>(character.codePoint);
}

}  // namespace base
