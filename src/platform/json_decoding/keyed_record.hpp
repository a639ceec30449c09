// Decodes JSON objects into records. A table of keys and members describes the record:
//
//   constexpr std::array fields{keyedField<&Point::x>("x"), keyedField<&Point::label>("label")};
//   Decoded decodeInto(const JsonValue& value, Point& out) { return decodeKeyed(value, fields, out); }
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/json_decoding/json_value.hpp"

namespace platform {

template <typename Record>
struct KeyedField {
  std::string_view key;
  bool isRequired;
  Decoded (*decode)(const JsonValue& value, Record& record);
};

template <typename T>
inline constexpr bool isOptional = false;
template <typename T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <typename Record, typename T>
Record recordOf(T Record::*);
template <typename Record, typename T>
T memberTypeOf(T Record::*);

/// A member and its key. A std::optional member may be absent or null, any other is required.
template <auto Member>
constexpr auto keyedField(std::string_view key) {
  using Record = decltype(recordOf(Member));
  return KeyedField<Record>{
      .key = key,
      .isRequired = !isOptional<decltype(memberTypeOf(Member))>,
      .decode = [](const JsonValue& value, Record& record) { return decodeInto(value, record.*Member); }};
}

/// Reads one object. If a key occurs twice, the last one counts; keys that the table does not name are ignored. The
/// error is that of the first field, in the table's order, that is missing or does not decode.
template <typename Record, std::size_t Count>
Decoded decodeKeyed(const JsonValue& value, const std::array<KeyedField<Record>, Count>& fields, Record& out) {
  std::array<bool, Count> isPresent{};
  std::array<std::unique_ptr<DecodingError>, Count> failures;
  const Decoded opened = value.forEachField([&](std::string_view key, const JsonValue& fieldValue) {
    for (std::size_t i = 0; i < Count; ++i) {
      if (fields[i].key != key) continue;
      Decoded decoded = fields[i].decode(fieldValue, out);
      isPresent[i] = true;
      failures[i] = decoded ? nullptr : std::make_unique<DecodingError>(std::move(decoded).error());
      return;
    }
  });
  if (!opened) return opened;

  for (std::size_t i = 0; i < Count; ++i) {
    if (failures[i]) return std::unexpected(insideKey(std::move(*failures[i]), fields[i].key));
    if (fields[i].isRequired && !isPresent[i]) {
      return std::unexpected(DecodingError{.kind = DecodingError::Kind::keyNotFound,
                                           .codingPath = {},
                                           .description = "no value for the key " + std::string(fields[i].key)});
    }
  }
  return {};
}

}  // namespace platform
