// Text in UTF-8 (RFC 3629).
#pragma once

#include <string_view>

namespace base {

/// Whether `bytes` are valid UTF-8: no overlong form, no surrogate, nothing beyond U+10FFFF, no cut sequence. Empty
/// text is valid.
bool isUtf8(std::string_view bytes);

/// Takes the first character off `text`, which must not be empty. A byte that begins no character is taken alone, as
/// the character of its value: "\x9b" gives U+009B.
char32_t takeCharacter(std::string_view& text);

}  // namespace base
