#include "platform/json_decoding/json_decoder.hpp"

#include <string>
#include <string_view>

#include <simdjson.h>

#include "platform/json_decoding/json_grammar.hpp"

namespace platform {
namespace {

static_assert(JsonBody::padding >= simdjson::SIMDJSON_PADDING);

std::unexpected<DecodingError> notJson(std::string_view reason) {
  return std::unexpected(
      DecodingError{DecodingError::Kind::dataCorrupted, {}, "the body is not valid JSON: " + std::string(reason)});
}

}  // namespace

Decoded JsonDecoder::withRoot(const JsonBody& body, absl::FunctionRef<Decoded(const JsonValue&)> read) const {
  simdjson::padded_string copy;
  simdjson::padded_string_view padded(body.text(), body.capacity());
  if (!body.hasPadding()) {
    copy = simdjson::padded_string(body.text());
    padded = copy;
  }

  // A parser serves one thread at a time and keeps memory for the largest body that it has met: one for each decode.
  simdjson::ondemand::parser parser;
  simdjson::ondemand::document document;
  if (const auto error = parser.iterate(padded).get(document)) return notJson(simdjson::error_message(error));
  if (const auto checked = checkGrammar(document, padded); !checked) return notJson(checked.error());

  document.rewind();
  std::string_view token;
  if (const auto error = document.raw_json_token().get(token)) return notJson(simdjson::error_message(error));
  token = trimmedToken(token);
  simdjson::ondemand::value root;
  if (token.starts_with('[') || token.starts_with('{')) {
    if (const auto error = document.get_value().get(root)) return notJson(simdjson::error_message(error));
  }
  return read(JsonValue(token, &root, padded, dates_));
}

}  // namespace platform
