// Reading JSON objects of a known form. A field that is missing or of another type ends the reading with a sentence
// that names the field by its path.
//
//   struct Row { std::int64_t number; std::optional<std::string> label; };
//   Row rowFrom(const base::JsonObject& object) {
//     return {.number = object.integer("number"), .label = object.optionalText("label")};
//   }
//   base::readObject(json, "row", rowFrom)
//
//   {"number": 7, "other": true}   -> Row{7, absent}
//   {"number": "7"}                -> "number: not an integer of 64 bits"
//   {"label": null}                -> "number: missing"
//   []                             -> "row: not an object"
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <nlohmann/json.hpp>

namespace base {

/// Thrown by JsonObject and caught by readObject(); no other code sees it.
struct JsonFault {
  std::string sentence;
};

/// One object, with the path that leads to it. A field that is null counts as absent. A view: the JSON must outlive it.
class JsonObject {
 public:
  JsonObject(const nlohmann::json& value, std::string path);

  /// "zadania[2].termin": a field's name with what leads to it.
  std::string pathTo(std::string_view name) const;
  /// Ends the reading with "PATH: FAULT".
  [[noreturn]] void refuse(std::string_view name, std::string_view fault) const;

  /// The field as it stands; null where it is absent.
  const nlohmann::json* find(std::string_view name) const;

  std::string text(std::string_view name) const;
  std::optional<std::string> optionalText(std::string_view name) const;
  std::vector<std::string> texts(std::string_view name) const;

  /// A whole number of 64 bits, also one written as 7.0 or 7e0.
  std::int64_t integer(std::string_view name) const;
  std::optional<std::int64_t> optionalInteger(std::string_view name) const;
  std::vector<std::int64_t> integers(std::string_view name) const;

  /// A finite number.
  std::optional<double> optionalNumber(std::string_view name) const;
  std::optional<bool> optionalFlag(std::string_view name) const;

  std::optional<JsonObject> optionalObject(std::string_view name) const;
  /// An array of objects.
  std::vector<JsonObject> objects(std::string_view name) const;

  /// What `parse` makes of the field's text. It returns an optional; where that is absent the reading ends with
  /// `fault`.
  template <typename Parse>
  auto optionalParsed(std::string_view name, Parse parse, std::string_view fault) const {
    const auto written = optionalText(name);
    decltype(parse(*written)) parsed;
    if (written && !(parsed = parse(*written))) refuse(name, fault);
    return parsed;
  }
  template <typename Parse>
  auto parsed(std::string_view name, Parse parse, std::string_view fault) const {
    return required(optionalParsed(name, parse, fault), name);
  }

 private:
  template <typename Value>
  Value required(std::optional<Value> value, std::string_view name) const {
    if (!value) refuse(name, "missing");
    return *std::move(value);
  }

  const nlohmann::json& array(std::string_view name) const;
  std::int64_t integerOf(const nlohmann::json& value, std::string_view name) const;

  const nlohmann::json* object_;
  std::string path_;
};

/// What `read` makes of the object. The error is one sentence; `name` stands in it for the object itself.
template <typename Read>
auto readObject(const nlohmann::json& value, std::string_view name, Read read)
    -> std::expected<std::invoke_result_t<Read, const JsonObject&>, std::string> {
  if (!value.is_object()) return std::unexpected(std::string(name) + ": not an object");
  try {
    return read(JsonObject(value, ""));
  } catch (const JsonFault& fault) {
    return std::unexpected(fault.sentence);
  }
}

}  // namespace base
