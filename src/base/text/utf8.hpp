// Whether bytes are text in UTF-8 (RFC 3629).
#pragma once

#include <string_view>

namespace base {

/// No overlong forms, no surrogates, nothing beyond U+10FFFF, nothing cut short. Empty text is.
bool isUtf8(std::string_view bytes);

}  // namespace base
