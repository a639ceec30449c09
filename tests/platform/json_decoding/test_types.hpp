// Types for the decoder's tests: a value of any kind, a record, and a date strategy.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/json_decoding/json_decoder.hpp"
#include "platform/json_decoding/keyed_record.hpp"

namespace platform {

/// Accepts any value without reading it.
struct Anything {};
inline Decoded decodeInto(const JsonValue&, Anything&) { return {}; }

struct Point {
  std::int64_t x = 0;
  std::string name;
  std::optional<std::string> note;
  std::optional<absl::Time> when;
};
inline Decoded decodeInto(const JsonValue& value, Point& out) {
  static constexpr std::array fields{keyedField<&Point::x>("x"), keyedField<&Point::name>("name"),
                                     keyedField<&Point::note>("note"), keyedField<&Point::when>("when")};
  return decodeKeyed(value, fields, out);
}

struct Path {
  std::vector<Point> points;
};
inline Decoded decodeInto(const JsonValue& value, Path& out) {
  static constexpr std::array fields{keyedField<&Path::points>("points")};
  return decodeKeyed(value, fields, out);
}

/// Seconds since the epoch, written as so many x: "xxx" is three.
inline JsonDecoder decoderOfTallies() {
  return JsonDecoder([](std::string_view text) -> std::expected<absl::Time, DecodingError> {
    if (text.find_first_not_of('x') != std::string_view::npos) {
      return std::unexpected(DecodingError{DecodingError::Kind::dataCorrupted, {}, "no tally: " + std::string(text)});
    }
    return absl::FromUnixSeconds(static_cast<std::int64_t>(text.size()));
  });
}

}  // namespace platform
