#include "platform/json_decoding/json_value.hpp"

#include <simdjson.h>

#include "base/text/whole_number.hpp"

namespace platform {
namespace {

using simdjson::dom::element_type;

std::string_view typeName(element_type type) {
  switch (type) {
    case element_type::ARRAY:
      return "an array";
    case element_type::OBJECT:
      return "an object";
    case element_type::STRING:
      return "a string";
    case element_type::BOOL:
      return "a boolean";
    case element_type::NULL_VALUE:
      return "null";
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
      break;
  }
  return "a number";
}

std::unexpected<DecodingError> corrupted(std::string description) {
  return std::unexpected(DecodingError{DecodingError::Kind::dataCorrupted, {}, std::move(description)});
}

}  // namespace

bool JsonValue::isNull() const { return element_->is_null(); }

std::unexpected<DecodingError> JsonValue::mismatch(std::string_view expected) const {
  const auto kind = isNull() ? DecodingError::Kind::valueNotFound : DecodingError::Kind::typeMismatch;
  std::string description("expected ");
  description.append(expected).append(", found ").append(typeName(element_->type()));
  return std::unexpected(DecodingError{kind, {}, std::move(description)});
}

std::optional<std::string_view> JsonValue::string() const {
  std::string_view string;
  if (element_->get(string) != simdjson::SUCCESS) return std::nullopt;
  return string;
}

std::expected<std::string, DecodingError> JsonValue::text() const {
  const auto text = string();
  if (!text) return mismatch("a string");
  return std::string(*text);
}

std::expected<std::int64_t, DecodingError> JsonValue::integer() const {
  if (!element_->is_number()) return mismatch("an integer");
  std::int64_t integer = 0;
  if (element_->get(integer) == simdjson::SUCCESS) return integer;
  double number = 0;
  if (element_->is_double() && element_->get(number) == simdjson::SUCCESS) {
    if (const auto whole = base::wholeNumber(number)) return *whole;
  }
  return corrupted("not an integer of 64 bits: " + simdjson::minify(*element_));
}

std::expected<base::Uuid, DecodingError> JsonValue::uuid() const {
  const auto text = string();
  if (!text) return mismatch("a UUID");
  const auto uuid = base::Uuid::parse(*text);
  if (!uuid) return corrupted("not a UUID");
  return *uuid;
}

std::expected<absl::Time, DecodingError> JsonValue::date() const {
  const auto text = string();
  if (!text) return mismatch("a date");
  return (*dates_)(*text);
}

Decoded JsonValue::forEachElement(absl::FunctionRef<bool(const JsonValue&)> read) const {
  simdjson::dom::array array;
  if (element_->get(array) != simdjson::SUCCESS) return mismatch("an array");
  for (const simdjson::dom::element element : array) {
    if (!read(JsonValue(element, *dates_))) break;
  }
  return {};
}

Decoded JsonValue::forEachField(absl::FunctionRef<void(std::string_view key, const JsonValue&)> read) const {
  simdjson::dom::object object;
  if (element_->get(object) != simdjson::SUCCESS) return mismatch("an object");
  for (const auto [key, value] : object) read(key, JsonValue(value, *dates_));
  return {};
}

}  // namespace platform
