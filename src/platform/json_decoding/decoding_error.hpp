// Why a JSON body could not be read as the records that were asked for.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

struct DecodingError {
  enum class Kind {
    typeMismatch,   ///< the value is of another JSON type
    keyNotFound,    ///< a required key is absent
    valueNotFound,  ///< null stands where a value is required
    dataCorrupted,  ///< not JSON, or a value of the right JSON type that can't be read
  };

  Kind kind = Kind::dataCorrupted;
  /// Where, from the body's root: "[3].termin", "zadania[0].id"; empty for the root itself.
  std::string codingPath;
  std::string description;

  friend bool operator==(const DecodingError&, const DecodingError&) = default;
};

/// The same error as seen one level further out: `key` or `index` goes in front of the path.
DecodingError insideKey(DecodingError error, std::string_view key);
DecodingError insideElement(DecodingError error, std::size_t index);

}  // namespace platform
