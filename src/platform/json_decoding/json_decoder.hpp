// Decodes JSON bodies (RFC 8259, UTF-8, no byte order mark) into values and records. One decoder may be used by any
// number of threads at once; large bodies are then decoded one after another, because the parsed form of each takes
// several times its size. The records declare their own fields (keyed_record.hpp).
#pragma once

#include <expected>
#include <mutex>
#include <string_view>
#include <utility>

#include <absl/functional/function_ref.h>

#include "platform/json_decoding/decoding_error.hpp"
#include "platform/json_decoding/json_value.hpp"

namespace platform {

/// Arrays and objects may stand this deep inside one another.
inline constexpr int maximumNesting = 512;
/// A body may hold this many values; each takes up to twenty bytes of memory while it is parsed. 16 MiB of tasks hold
/// less than half as many.
inline constexpr std::size_t mostValuesDecoded = 2'000'000;

class JsonDecoder {
 public:
  /// `dates` may be called from several threads at once.
  explicit JsonDecoder(DateStrategy dates) : dates_(std::move(dates)) {}

  /// The whole body as one T. A body that is not JSON, anywhere, is corrupted data at the root, whatever was asked for.
  /// That includes half a surrogate pair in a string, a number that neither 64 bits nor a double can hold, and a body
  /// whose arrays and objects are nested more than `maximumNesting` deep.
  template <typename T>
  std::expected<T, DecodingError> decode(std::string_view body) const {
    std::expected<T, DecodingError> result;
    Decoded decoded = withRoot(body, [&](const JsonValue& root) { return decodeInto(root, *result); });
    if (!decoded) result = std::unexpected(std::move(decoded).error());
    return result;
  }

 private:
  Decoded withRoot(std::string_view body, absl::FunctionRef<Decoded(const JsonValue&)> read) const;

  DateStrategy dates_;
  mutable std::mutex largeBodies_;
};

}  // namespace platform
