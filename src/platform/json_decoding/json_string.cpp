#include "platform/json_decoding/json_string.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace platform {
namespace {

constexpr std::size_t hexDigits = 4;

/// The value of four hexadecimal digits; absent where the text does not begin with four.
std::optional<std::uint32_t> codeUnit(std::string_view text) {
  if (text.size() < hexDigits) return std::nullopt;
  std::uint32_t value = 0;
  for (const char c : text.substr(0, hexDigits)) {
    std::uint32_t digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<std::uint32_t>(c - '0');
    } else if (c >= 'a' && c <= 'f') {
      digit = static_cast<std::uint32_t>(c - 'a') + 10;
    } else if (c >= 'A' && c <= 'F') {
      digit = static_cast<std::uint32_t>(c - 'A') + 10;
    } else {
      return std::nullopt;
    }
    value = value * 16 + digit;
  }
  return value;
}

/// What a backslash and this letter stand for; absent for any other letter (and for "u").
std::optional<char> shortEscape(char letter) {
  switch (letter) {
    case '"':
    case '\\':
    case '/':
      return letter;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return std::nullopt;
  }
}

bool isHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void appendUtf8(std::string& text, std::uint32_t codePoint) {
  const auto continuation = [](std::uint32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += {static_cast<char>(0xC0 | (codePoint >> 6)), continuation(codePoint)};
  } else if (codePoint < 0x10000) {
    text += {static_cast<char>(0xE0 | (codePoint >> 12)), continuation(codePoint >> 6), continuation(codePoint)};
  } else {
    text += {static_cast<char>(0xF0 | (codePoint >> 18)), continuation(codePoint >> 12), continuation(codePoint >> 6),
             continuation(codePoint)};
  }
}

/// Takes a "\u" escape's digits off the front of `rest`, and those of its other half where it begins a surrogate pair.
std::optional<std::uint32_t> takeCodePoint(std::string_view& rest) {
  const std::optional<std::uint32_t> first = codeUnit(rest);
  if (!first || isLowSurrogate(*first)) return std::nullopt;
  rest.remove_prefix(hexDigits);
  if (!isHighSurrogate(*first)) return first;

  if (!rest.starts_with("\\u")) return std::nullopt;
  const std::optional<std::uint32_t> second = codeUnit(rest.substr(2));
  if (!second || !isLowSurrogate(*second)) return std::nullopt;
  rest.remove_prefix(2 + hexDigits);
  return 0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00);
}

}  // namespace

bool hasWellFormedEscapes(std::string_view quoted) {
  std::size_t at = quoted.find('\\');
  while (at != std::string_view::npos) {
    if (at + 1 == quoted.size()) return false;
    if (quoted[at + 1] == 'u') {
      if (!codeUnit(quoted.substr(at + 2))) return false;
      at += 2 + hexDigits;
    } else {
      if (!shortEscape(quoted[at + 1])) return false;
      at += 2;
    }
    at = quoted.find('\\', at);
  }
  return true;
}

std::optional<std::string> unescaped(std::string_view quoted) {
  std::string text;
  text.reserve(quoted.size());
  while (true) {
    const std::size_t plain = std::min(quoted.find('\\'), quoted.size());
    text.append(quoted.substr(0, plain));
    quoted.remove_prefix(plain);
    if (quoted.empty()) return text;

    const char letter = quoted.size() > 1 ? quoted[1] : '\0';
    quoted.remove_prefix(std::min<std::size_t>(2, quoted.size()));
    if (letter == 'u') {
      const std::optional<std::uint32_t> codePoint = takeCodePoint(quoted);
      if (!codePoint) return std::nullopt;
      appendUtf8(text, *codePoint);
    } else {
      const std::optional<char> c = shortEscape(letter);
      if (!c) return std::nullopt;
      text += *c;
    }
  }
}

std::string_view untilClosingQuote(std::string_view text) {
  std::size_t at = text.find('"');
  if (text.substr(0, at).find('\\') == std::string_view::npos) return text.substr(0, at);
  at = 0;
  while (at < text.size() && text[at] != '"') at += text[at] == '\\' ? 2U : 1U;
  return text.substr(0, at);
}

}  // namespace platform
