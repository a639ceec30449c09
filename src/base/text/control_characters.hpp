// Control characters in texts of others, which a terminal, a file or a JSON reader could obey.
#pragma once

#include <string>
#include <string_view>

#include <absl/functional/function_ref.h>

namespace base {

/// U+0000 to U+001F, U+007F, and U+0080 to U+009F (the one-character starts of escape sequences are among them).
constexpr bool isControl(char32_t character) { return character < 0x20 || (character >= 0x7f && character < 0xa0); }

bool holdsControl(std::string_view text);

/// `text` with each control character replaced by what `replacement` returns for it. A byte that is no UTF-8 counts as
/// the character of its value, since a terminal may take it for one: the bare byte 0x9b is a control.
std::string replaceControls(std::string_view text, absl::FunctionRef<std::string(char32_t control)> replacement);

}  // namespace base
