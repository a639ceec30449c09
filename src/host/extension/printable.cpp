#include "host/extension/printable.hpp"

#include <algorithm>
#include <utility>

#include "base/text/control_characters.hpp"
#include "base/text/utf8.hpp"

namespace host {
namespace {

/// Controls of C0 and C1, line and paragraph separators, and the marks, overrides and isolates of direction.
bool disturbsATerminal(char32_t c) {
  if (c == '\n' || c == '\t') return false;
  return base::isControl(c) || c == 0x061c || c == 0x200e || c == 0x200f || (c >= 0x2028 && c <= 0x202e) ||
         (c >= 0x2066 && c <= 0x2069);
}

/// Bytes of the character that this one begins: 1 for ASCII and for what begins none.
std::size_t lengthFrom(unsigned char first) {
  if (first >= 0xf0 && first <= 0xf4) return 4;
  if (first >= 0xe0 && first < 0xf0) return 3;
  return first >= 0xc2 && first < 0xe0 ? 2 : 1;
}

/// Whether the text may be the start of a character that goes on.
bool mayGoOn(std::string_view text) {
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; };
  return text.size() < lengthFrom(static_cast<unsigned char>(text.front())) &&
         std::ranges::all_of(text.substr(1), continues);
}

}  // namespace

std::string PrintableStream::pass(std::string_view bytes) {
  const std::string text = std::exchange(pending_, {}).append(bytes);
  std::string shown;
  shown.reserve(text.size());
  for (std::string_view rest = text; !rest.empty();) {
    if (mayGoOn(rest)) {
      pending_ = rest;
      break;
    }
    const std::string_view before = rest;
    const char32_t character = base::takeCharacter(rest);
    const std::string_view taken = before.substr(0, before.size() - rest.size());
    const bool valid = taken.size() > 1 || character < 0x80;
    shown += valid && !disturbsATerminal(character) ? taken : "?";
  }
  return shown;
}

std::string PrintableStream::finish() { return std::string(std::exchange(pending_, {}).size(), '?'); }

std::string printable(std::string_view text) {
  PrintableStream stream;
  std::string shown = stream.pass(text);
  return shown + stream.finish();
}

}  // namespace host
