#include "platform/json_decoding/json_extent.hpp"

#include <algorithm>
#include <cstddef>

#include "platform/json_decoding/json_string.hpp"

namespace platform {
namespace {

constexpr bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

constexpr bool endsScalar(char c) { return c == ',' || c == ']' || c == '}' || isBlank(c); }

/// From the opening quote to the closing one.
std::size_t stringLength(std::string_view text) { return untilClosingQuote(text.substr(1)).size() + 2; }

std::size_t containerLength(std::string_view text) {
  std::size_t depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    switch (text[at]) {
      case '"':
        at += stringLength(text.substr(at));
        continue;
      case '[':
      case '{':
        ++depth;
        break;
      case ']':
      case '}':
        if (--depth == 0) return at + 1;
        break;
      default:
        break;
    }
    ++at;
  }
  return text.size();
}

}  // namespace

std::string_view withoutBlanksInFront(std::string_view text) {
  return {std::ranges::find_if_not(text, isBlank), text.end()};
}

std::string_view scalarInFront(std::string_view text) { return {text.begin(), std::ranges::find_if(text, endsScalar)}; }

std::string_view valueInFront(std::string_view text) {
  if (text.starts_with('"')) return text.substr(0, stringLength(text));
  if (text.starts_with('[') || text.starts_with('{')) return text.substr(0, containerLength(text));
  return scalarInFront(text);
}

}  // namespace platform
