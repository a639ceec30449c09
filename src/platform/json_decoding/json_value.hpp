// One value of a JSON body. Each function returns the value as one type, or the reason why it is not of that type.
//
//   {"x": 7.0, "name": null}   field x:    integer() -> 7, text() -> typeMismatch "expected a string, found a number"
//                              field name: text() -> valueNotFound "expected a string, found null"
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <absl/functional/function_ref.h>
#include <absl/time/time.h>

#include "base/text/uuid.hpp"
#include "platform/json_decoding/decoding_error.hpp"

namespace simdjson::dom {
class element;
}

namespace platform {

using Decoded = std::expected<void, DecodingError>;

/// The rule by which every date of a body is read from its text.
using DateStrategy = std::function<std::expected<absl::Time, DecodingError>(std::string_view)>;

/// A view, valid only during the call that receives it.
class JsonValue {
 public:
  JsonValue(const simdjson::dom::element& element, const DateStrategy& dates) : element_(&element), dates_(&dates) {}

  bool isNull() const;

  std::expected<std::string, DecodingError> text() const;
  /// A whole number that fits, also one written as 7.0 or 70e-1; any other number is corrupted data. A number written
  /// with a fraction or an exponent counts as the double next to it.
  std::expected<std::int64_t, DecodingError> integer() const;
  std::expected<base::Uuid, DecodingError> uuid() const;
  /// By the decoder's date strategy.
  std::expected<absl::Time, DecodingError> date() const;

  /// Calls `read` for each element until it returns false.
  Decoded forEachElement(absl::FunctionRef<bool(const JsonValue&)> read) const;
  /// Calls `read` for each key, its escapes resolved, in the order of the body and each time that the key occurs.
  Decoded forEachField(absl::FunctionRef<void(std::string_view key, const JsonValue&)> read) const;

 private:
  std::unexpected<DecodingError> mismatch(std::string_view expected) const;
  std::optional<std::string_view> string() const;

  const simdjson::dom::element* element_;
  const DateStrategy* dates_;
};

// Types are made decodable by an overload of decodeInto(), which a record declares beside its own declaration.

template <typename T>
Decoded assignDecoded(std::expected<T, DecodingError> value, T& out) {
  if (!value) return std::unexpected(std::move(value).error());
  out = *std::move(value);
  return {};
}

inline Decoded decodeInto(const JsonValue& value, std::string& out) { return assignDecoded(value.text(), out); }
inline Decoded decodeInto(const JsonValue& value, std::int64_t& out) { return assignDecoded(value.integer(), out); }
inline Decoded decodeInto(const JsonValue& value, base::Uuid& out) { return assignDecoded(value.uuid(), out); }
inline Decoded decodeInto(const JsonValue& value, absl::Time& out) { return assignDecoded(value.date(), out); }

/// null is an absent value.
template <typename T>
Decoded decodeInto(const JsonValue& value, std::optional<T>& out) {
  out.reset();
  if (value.isNull()) return {};
  Decoded decoded = decodeInto(value, out.emplace());
  if (!decoded) out.reset();
  return decoded;
}

/// The elements in the order of the body; one that does not decode fails the whole list.
template <typename T>
Decoded decodeInto(const JsonValue& value, std::vector<T>& out) {
  out.clear();
  Decoded decoded;
  const Decoded opened = value.forEachElement([&](const JsonValue& element) {
    decoded = decodeInto(element, out.emplace_back());
    if (!decoded) decoded = std::unexpected(insideElement(std::move(decoded).error(), out.size() - 1));
    return decoded.has_value();
  });
  return opened ? decoded : opened;
}

}  // namespace platform
