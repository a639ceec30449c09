// The letters of HTTP's names are ASCII whatever the locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace platform::ascii {

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr bool isLetterOrDigit(char c) { return isDigit(c) || (lower(c) >= 'a' && lower(c) <= 'z'); }

constexpr bool equalsIgnoringCase(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, {}, lower, lower);
}

}  // namespace platform::ascii
