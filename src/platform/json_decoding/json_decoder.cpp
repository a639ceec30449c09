#include "platform/json_decoding/json_decoder.hpp"

#include <string>

#include "platform/json_decoding/json_grammar.hpp"

namespace platform {

Decoded JsonDecoder::withRoot(std::string_view body, absl::FunctionRef<Decoded(const JsonValue&)> read) const {
  const auto value = checkedValue(body);
  if (!value) {
    return std::unexpected(DecodingError{
        DecodingError::Kind::dataCorrupted, {}, "the body is not valid JSON: " + std::string(value.error())});
  }
  return read(JsonValue(*value, dates_));
}

}  // namespace platform
