#include "platform/json_decoding/json_value.hpp"

#include "platform/json_decoding/json_extent.hpp"
#include "platform/json_decoding/json_number.hpp"
#include "platform/json_decoding/json_string.hpp"

namespace platform {
namespace {

std::string_view typeName(std::string_view value) {
  switch (value.front()) {
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

std::string_view withoutQuotes(std::string_view string) { return string.substr(1, string.size() - 2); }

std::unexpected<DecodingError> corrupted(std::string description) {
  return std::unexpected(DecodingError{DecodingError::Kind::dataCorrupted, {}, std::move(description)});
}

/// A container's items from front to back: elements, or keys and values in turn.
class Items {
 public:
  explicit Items(std::string_view container) : rest_(container) { skipPunctuation(); }

  bool areOver() const { return rest_.starts_with(']') || rest_.starts_with('}'); }

  std::string_view take() {
    const std::string_view item = valueInFront(rest_);
    rest_.remove_prefix(item.size());
    skipPunctuation();
    return item;
  }

 private:
  /// The bracket that opens the container, or what stands between an item and the next one.
  void skipPunctuation() {
    rest_ = withoutBlanksInFront(rest_);
    if (!areOver()) rest_ = withoutBlanksInFront(rest_.substr(1));
  }

  std::string_view rest_;
};

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
    error.description += typeName(text_);
  }
  return std::unexpected(std::move(error));
}

std::optional<std::string_view> JsonValue::quoted() const {
  if (!text_.starts_with('"')) return std::nullopt;
  return withoutQuotes(text_);
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
  const bool isNumber = text_.starts_with('-') || (text_.front() >= '0' && text_.front() <= '9');
  if (!isNumber) return mismatch("an integer");
  const std::optional<std::int64_t> value = integerOfJsonNumber(text_);
  // A number's text may be as long as the body; the first digits tell enough.
  if (!value) return corrupted("not an integer of 64 bits: " + std::string(text_.substr(0, 40)));
  return *value;
}

std::expected<base::Uuid, DecodingError> JsonValue::uuid() const {
  const std::optional<std::string_view> inner = quoted();
  if (!inner) return mismatch("a UUID");
  std::optional<base::Uuid> uuid;
  if (!inner->contains('\\')) {
    uuid = base::Uuid::parse(*inner);
  } else if (const std::optional<std::string> text = unescaped(*inner)) {
    uuid = base::Uuid::parse(*text);
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
  if (!text_.starts_with('[')) return mismatch("an array");
  for (Items elements(text_); !elements.areOver();) {
    if (!read(JsonValue(elements.take(), *dates_))) break;
  }
  return {};
}

Decoded JsonValue::forEachField(absl::FunctionRef<void(std::string_view key, const JsonValue&)> read) const {
  if (!text_.starts_with('{')) return mismatch("an object");
  for (Items items(text_); !items.areOver();) {
    const std::string_view key = withoutQuotes(items.take());
    const JsonValue value(items.take(), *dates_);
    if (!key.contains('\\')) {
      read(key, value);
    } else if (const std::optional<std::string> plainKey = unescaped(key)) {
      read(*plainKey, value);
    }
    // A key with half a surrogate pair is no text, hence no key that anyone could ask for.
  }
  return {};
}

}  // namespace platform
