#include "platform/json_decoding/json_value.hpp"

#include <simdjson.h>

#include "platform/json_decoding/json_grammar.hpp"
#include "platform/json_decoding/json_number.hpp"
#include "platform/json_decoding/json_string.hpp"

namespace platform {
namespace {

std::string_view typeName(std::string_view token) {
  switch (token.front()) {
    case '[':
      return "an array";
    case '{':
      return "an object";
    case '"':
      return "a string";
    case 't':
    case 'f':
      return "a boolean";
    default:
      return "a number";
  }
}

std::unexpected<DecodingError> corrupted(std::string description) {
  return std::unexpected(DecodingError{DecodingError::Kind::dataCorrupted, {}, std::move(description)});
}

/// The body has been checked as a whole before, so that the parser has nothing left to complain of.
std::unexpected<DecodingError> parserFailed(simdjson::error_code error) {
  return corrupted(simdjson::error_message(error));
}

}  // namespace

std::unexpected<DecodingError> JsonValue::mismatch(std::string_view expected) const {
  DecodingError error;
  error.description = "expected ";
  error.description += expected;
  if (isNull()) {
    error.kind = DecodingError::Kind::valueNotFound;
    error.description += ", found null";
  } else {
    error.kind = DecodingError::Kind::typeMismatch;
    error.description += ", found ";
    error.description += typeName(token_);
  }
  return std::unexpected(std::move(error));
}

std::optional<std::string_view> JsonValue::quoted() const {
  if (!token_.starts_with('"')) return std::nullopt;
  return token_.substr(1, token_.size() - 2);
}

std::expected<std::string, DecodingError> JsonValue::text() const {
  const std::optional<std::string_view> inner = quoted();
  if (!inner) return mismatch("a string");
  if (!inner->contains('\\')) return std::string(*inner);
  std::optional<std::string> text = unescaped(*inner);
  if (!text) return corrupted("half a surrogate pair stands alone in a string");
  return *std::move(text);
}

std::expected<std::int64_t, DecodingError> JsonValue::integer() const {
  const bool isNumber = token_.starts_with('-') || (token_.front() >= '0' && token_.front() <= '9');
  if (!isNumber) return mismatch("an integer");
  const std::optional<std::int64_t> value = integerOfJsonNumber(token_);
  // A number's text may be as long as the body; the first digits tell enough.
  if (!value) return corrupted("not an integer of 64 bits: " + std::string(token_.substr(0, 40)));
  return *value;
}

std::expected<Uuid, DecodingError> JsonValue::uuid() const {
  const std::optional<std::string_view> inner = quoted();
  if (!inner) return mismatch("a UUID");
  std::optional<Uuid> uuid;
  if (!inner->contains('\\')) {
    uuid = Uuid::parse(*inner);
  } else if (const std::optional<std::string> text = unescaped(*inner)) {
    uuid = Uuid::parse(*text);
  }
  if (!uuid) return corrupted("not a UUID");
  return *uuid;
}

std::expected<absl::Time, DecodingError> JsonValue::date() const {
  const std::optional<std::string_view> inner = quoted();
  if (!inner) return mismatch("a date");
  if (!inner->contains('\\')) return (*dates_)(*inner);
  const std::expected<std::string, DecodingError> date = text();
  if (!date) return std::unexpected(date.error());
  return (*dates_)(*date);
}

Decoded JsonValue::forEachElement(absl::FunctionRef<bool(const JsonValue&)> read) const {
  if (!token_.starts_with('[')) return mismatch("an array");
  simdjson::ondemand::array elements;
  if (const auto error = static_cast<simdjson::ondemand::value*>(container_)->get_array().get(elements)) {
    return parserFailed(error);
  }
  for (auto element : elements) {
    if (element.error()) return parserFailed(element.error());
    simdjson::ondemand::value& value = element.value_unsafe();
    if (!read({trimmedToken(value.raw_json_token()), &value, body_, *dates_})) break;
  }
  return {};
}

Decoded JsonValue::forEachField(absl::FunctionRef<void(std::string_view key, const JsonValue&)> read) const {
  if (!token_.starts_with('{')) return mismatch("an object");
  simdjson::ondemand::object fields;
  if (const auto error = static_cast<simdjson::ondemand::value*>(container_)->get_object().get(fields)) {
    return parserFailed(error);
  }
  for (auto field : fields) {
    if (field.error()) return parserFailed(field.error());
    const char* start = field.value_unsafe().key().raw();
    const auto left = static_cast<std::size_t>(body_.data() + body_.size() - start);
    const std::string_view key = untilClosingQuote({start, left});
    simdjson::ondemand::value& value = field.value_unsafe().value();
    const JsonValue fieldValue(trimmedToken(value.raw_json_token()), &value, body_, *dates_);
    if (!key.contains('\\')) {
      read(key, fieldValue);
    } else if (const std::optional<std::string> plainKey = unescaped(key)) {
      read(*plainKey, fieldValue);
    }
    // A key with half a surrogate pair is no text, hence no key that anyone could ask for.
  }
  return {};
}

}  // namespace platform
