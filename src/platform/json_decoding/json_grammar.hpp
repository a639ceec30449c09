// Checks a whole body before anything is read from it, so that malformed text fails also where nobody asks for it.
#pragma once

#include <expected>
#include <string_view>

namespace platform {

/// Arrays and objects may stand this deep inside one another.
inline constexpr int maximumNesting = 512;

/// The text of the one value that the body is by RFC 8259, in UTF-8, without the blanks around it. The error says in
/// words what is wrong.
std::expected<std::string_view, std::string_view> checkedValue(std::string_view body);

}  // namespace platform
