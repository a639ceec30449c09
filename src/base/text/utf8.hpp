// Text in UTF-8 (RFC 3629).
#pragma once

#include <optional>
#include <string_view>

namespace base {

/// Whether `bytes` are valid UTF-8: no overlong form, no surrogate, nothing beyond U+10FFFF, no cut sequence. Empty
/// text is valid.
bool isUtf8(std::string_view bytes);

/// Takes the first character off `text`, which must not be empty. A byte that begins no character is taken alone, as
/// the character of its value: "\x9b" gives U+009B.
char32_t takeCharacter(std::string_view& text);

/// Takes the first character off `text`, which must not be empty. Absent for a byte that begins no character; that byte
/// is taken alone.
std::optional<char32_t> takeValidCharacter(std::string_view& text);

/// Whether it is one of the code points that Unicode keeps from ever being a character, such as U+FFFE and U+FDD0. They
/// are valid in UTF-8.
constexpr bool isNoncharacter(char32_t code) { return (code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF); }

}  // namespace base
