// JSON strings (RFC 8259, section 7) as they stand between their quotes in a body: whether their escapes are well
// formed, and the text that they stand for. That the bytes are UTF-8 without bare control characters is settled before.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Whether every escape is one of the grammar's. Half a surrogate pair is: the grammar knows four digits only.
bool hasWellFormedEscapes(std::string_view quoted);

/// The text in UTF-8; absent where half a surrogate pair stands alone, for which UTF-8 has no form. `quoted` must have
/// well-formed escapes.
std::optional<std::string> unescaped(std::string_view quoted);

/// The part of `text`, which begins behind a string's opening quote, up to its closing quote.
std::string_view untilClosingQuote(std::string_view text);

}  // namespace platform
