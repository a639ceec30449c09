#include "platform/json_decoding/json_grammar.hpp"

#include <algorithm>
#include <cstddef>

#include "base/text/utf8.hpp"
#include "platform/json_decoding/json_extent.hpp"
#include "platform/json_decoding/json_number.hpp"
#include "platform/json_decoding/json_string.hpp"

namespace platform {
namespace {

using Checked = std::expected<void, std::string_view>;

Checked malformed(std::string_view reason) { return std::unexpected(reason); }

/// Goes through the text from front to back; `rest` is what has not been seen yet.
class GrammarCheck {
 public:
  explicit GrammarCheck(std::string_view text) : rest_(text) {}

  std::string_view rest() const { return rest_; }

  /// Recursion is safe here: it ends at the greatest nesting.
  Checked value(int depth) {
    switch (next()) {
      case '[':
        return container(depth, ']');
      case '{':
        return container(depth, '}');
      case '"':
        return string();
      case 't':
        return literal("true");
      case 'f':
        return literal("false");
      case 'n':
        return literal("null");
      default:
        return number();
    }
  }

 private:
  /// NUL, which no grammar allows anywhere, stands for the end too.
  char next() const { return rest_.empty() ? '\0' : rest_.front(); }

  void skip(std::size_t count) { rest_.remove_prefix(count); }
  void skipBlanks() { rest_ = withoutBlanksInFront(rest_); }

  bool take(char c) {
    if (next() != c) return false;
    skip(1);
    return true;
  }

  Checked container(int depth, char closing) {
    if (depth > maximumNesting) return malformed("arrays and objects are nested too deeply");
    skip(1);
    skipBlanks();
    if (take(closing)) return {};
    while (true) {
      Checked checked = closing == ']' ? value(depth + 1) : field(depth + 1);
      if (!checked) return checked;
      skipBlanks();
      if (take(closing)) return {};
      if (!take(',')) return malformed("an array or object has no end");
      skipBlanks();
    }
  }

  Checked field(int depth) {
    if (next() != '"') return malformed("a key is missing");
    if (Checked checked = string(); !checked) return checked;
    skipBlanks();
    if (!take(':')) return malformed("no colon follows a key");
    skipBlanks();
    return value(depth);
  }

  Checked string() {
    const std::string_view quoted = untilClosingQuote(rest_.substr(1));
    if (quoted.size() + 2 > rest_.size()) return malformed("a string has no end");
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
    if (std::ranges::any_of(quoted, isControl)) return malformed("a string holds a bare control character");
    if (!hasWellFormedEscapes(quoted)) return malformed("a string holds an unknown escape");
    skip(quoted.size() + 2);
    return {};
  }

  Checked literal(std::string_view word) {
    if (!rest_.starts_with(word)) return malformed("a literal is none of true, false and null");
    skip(word.size());
    return {};
  }

  Checked number() {
    const std::string_view token = scalarInFront(rest_);
    if (!isJsonNumber(token)) return malformed("a value is neither a literal, a number nor a string");
    skip(token.size());
    return {};
  }

  std::string_view rest_;
};

}  // namespace

std::expected<std::string_view, std::string_view> checkedValue(std::string_view body) {
  if (!base::isUtf8(body)) return std::unexpected("it is not UTF-8");
  const std::string_view text = withoutBlanksInFront(body);
  if (text.empty()) return std::unexpected("it is empty");
  GrammarCheck check(text);
  if (const Checked checked = check.value(1); !checked) return std::unexpected(checked.error());
  if (!withoutBlanksInFront(check.rest()).empty()) return std::unexpected("something follows the value");
  return text.substr(0, text.size() - check.rest().size());
}

}  // namespace platform
