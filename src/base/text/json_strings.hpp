// Finds the strings of a JSON text without parsing it, for checks that run before a parser allocates memory.
#pragma once

#include <utility>

namespace base {

/// Takes the bytes of a text one after another. For a text that is not JSON the results have no meaning.
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
