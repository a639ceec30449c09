#include "platform/json_decoding/slow_json_grammar.hpp"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace platform {
namespace {

class SlowGrammar {
 public:
  SlowGrammar(std::string_view text, int maximumDepth) : text_(text), maximumDepth_(maximumDepth) {}

  bool document() {
    blanks();
    if (!value(0)) return false;
    blanks();
    return at_ == text_.size();
  }

 private:
  int peek() const { return at_ < text_.size() ? static_cast<unsigned char>(text_[at_]) : -1; }
  bool take(char c) {
    if (peek() != static_cast<unsigned char>(c)) return false;
    ++at_;
    return true;
  }
  bool take(std::string_view word) {
    for (const char c : word) {
      if (!take(c)) return false;
    }
    return true;
  }
  bool takeBetween(int low, int high) {
    if (peek() < low || peek() > high) return false;
    ++at_;
    return true;
  }
  void blanks() {
    while (take(' ') || take('\t') || take('\n') || take('\r')) {
    }
  }

  bool value(int depth) {
    switch (peek()) {
      case '{':
        return depth < maximumDepth_ && object(depth + 1);
      case '[':
        return depth < maximumDepth_ && array(depth + 1);
      case '"':
        return string();
      case 't':
        return take("true");
      case 'f':
        return take("false");
      case 'n':
        return take("null");
      default:
        return number();
    }
  }

  bool object(int depth) {
    take('{');
    blanks();
    if (take('}')) return true;
    do {
      blanks();
      if (!string()) return false;
      blanks();
      if (!take(':')) return false;
      blanks();
      if (!value(depth)) return false;
      blanks();
    } while (take(','));
    return take('}');
  }

  bool array(int depth) {
    take('[');
    blanks();
    if (take(']')) return true;
    do {
      blanks();
      if (!value(depth)) return false;
      blanks();
    } while (take(','));
    return take(']');
  }

  bool digits() {
    if (!takeBetween('0', '9')) return false;
    while (takeBetween('0', '9')) {
    }
    return true;
  }

  /// A whole number must fit 64 bits, any other must be finite as a double.
  bool number() {
    const std::size_t start = at_;
    if (!numberToken()) return false;
    const std::string token(text_.substr(start, at_ - start));
    if (token.find_first_of(".eE") != std::string::npos) return std::isfinite(std::strtod(token.c_str(), nullptr));
    const char* const end = token.data() + token.size();
    std::int64_t asSigned = 0;
    std::uint64_t asUnsigned = 0;
    return std::from_chars(token.data(), end, asSigned).ec == std::errc() ||
           (token.front() != '-' && std::from_chars(token.data(), end, asUnsigned).ec == std::errc());
  }

  bool numberToken() {
    take('-');
    if (!take('0')) {
      if (!takeBetween('1', '9')) return false;
      while (takeBetween('0', '9')) {
      }
    }
    if (take('.') && !digits()) return false;
    if (take('e') || take('E')) {
      if (!take('+')) take('-');
      return digits();
    }
    return true;
  }

  bool string() {
    if (!take('"')) return false;
    while (!take('"')) {
      if (!character()) return false;
    }
    return true;
  }

  bool character() {
    if (take('\\')) {
      if (!take('u')) {
        for (const char c : std::string_view("\"\\/bfnrt")) {
          if (take(c)) return true;
        }
        return false;
      }
      return escapedCodeUnits();
    }
    // The rows of the table of well-formed sequences (RFC 3629, section 4).
    const auto tail = [this] { return takeBetween(0x80, 0xBF); };
    if (takeBetween(0x20, 0x7F)) return true;
    if (takeBetween(0xC2, 0xDF)) return tail();
    if (takeBetween(0xE0, 0xE0)) return takeBetween(0xA0, 0xBF) && tail();
    if (takeBetween(0xE1, 0xEC)) return tail() && tail();
    if (takeBetween(0xED, 0xED)) return takeBetween(0x80, 0x9F) && tail();
    if (takeBetween(0xEE, 0xEF)) return tail() && tail();
    if (takeBetween(0xF0, 0xF0)) return takeBetween(0x90, 0xBF) && tail() && tail();
    if (takeBetween(0xF1, 0xF3)) return tail() && tail() && tail();
    if (takeBetween(0xF4, 0xF4)) return takeBetween(0x80, 0x8F) && tail() && tail();
    return false;
  }

  /// Four digits, and behind the first half of a surrogate pair the second half.
  bool escapedCodeUnits() {
    const auto first = fourDigits();
    if (!first || (*first >= 0xDC00 && *first <= 0xDFFF)) return false;
    if (*first < 0xD800 || *first > 0xDBFF) return true;
    if (!take("\\u")) return false;
    const auto second = fourDigits();
    return second && *second >= 0xDC00 && *second <= 0xDFFF;
  }

  std::optional<int> fourDigits() {
    for (int i = 0; i < 4; ++i) {
      if (!takeBetween('0', '9') && !takeBetween('a', 'f') && !takeBetween('A', 'F')) return std::nullopt;
    }
    return std::stoi(std::string(text_.substr(at_ - 4, 4)), nullptr, 16);
  }

  std::string_view text_;
  int maximumDepth_;
  std::size_t at_ = 0;
};

}  // namespace

bool isJsonBySlowGrammar(std::string_view text, int maximumDepth) { return SlowGrammar(text, maximumDepth).document(); }

}  // namespace platform
