// Where the strings of a JSON text stand, found byte by byte: for what must be known of a text before a parser may take
// memory for it.
#pragma once

#include <utility>

namespace base {

/// Is given the bytes of a text in turn. What it says of a text that is not JSON means nothing.
class JsonStrings {
 public:
  enum class Place { outside, openingQuote, inside, closingQuote };

  /// Where the next byte of the text stands.
  Place place(char byte) {
    if (!isInside_) {
      isInside_ = byte == '"';
      return isInside_ ? Place::openingQuote : Place::outside;
    }
    const bool isEscaped = std::exchange(isAfterBackslash_, false);
    isAfterBackslash_ = byte == '\\' && !isEscaped;
    isInside_ = byte != '"' || isEscaped;
    return isInside_ ? Place::inside : Place::closingQuote;
  }

  bool isOutside(char byte) { return place(byte) == Place::outside; }

 private:
  bool isInside_ = false;
  bool isAfterBackslash_ = false;
};

}  // namespace base
