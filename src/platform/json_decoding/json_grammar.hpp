// Checks a whole document before anything is read from it. The library behind it steps over what nobody asks for
// without looking, so that malformed text would pass inside ignored keys.
#pragma once

#include <expected>
#include <string_view>

#include <simdjson.h>

namespace platform {

/// Arrays and objects may stand this deep inside one another.
inline constexpr int maximumNesting = 512;

/// Whether the body is one value by RFC 8259 and nothing else; the error says in words what is wrong. `document` must
/// stand at its start, over `body`, whose UTF-8, quotes and control characters are checked when it is made.
std::expected<void, std::string_view> checkGrammar(simdjson::ondemand::document& document, std::string_view body);

/// A token without the blanks that separate it from the next one.
std::string_view trimmedToken(std::string_view token);

}  // namespace platform
