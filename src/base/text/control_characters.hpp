// Control characters in foreign texts, which a terminal would obey.
#pragma once

#include <string>
#include <string_view>

#include <absl/functional/function_ref.h>

namespace base {

/// U+0000 to U+001F, U+007F, and U+0080 to U+009F (the one-character starts of escape sequences are among them).
constexpr bool isControl(char32_t character) { return character < 0x20 || (character >= 0x7f && character < 0xa0); }

bool holdsControl(std::string_view text);

/// `text` with each control character replaced by what `replacement` returns for it. A byte that is not valid UTF-8
/// counts as the character of its value, because a terminal may read it so: the single byte 0x9b is a control.
std::string replaceControls(std::string_view text, absl::FunctionRef<std::string(char32_t control)> replacement);

}  // namespace base
