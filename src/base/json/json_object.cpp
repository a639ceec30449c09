#include "base/json/json_object.hpp"

#include <cmath>
#include <limits>
#include <utility>

#include "base/text/whole_number.hpp"

namespace base {

using nlohmann::json;

JsonObject::JsonObject(const json& value, std::string path) : object_(&value), path_(std::move(path)) {
  if (!value.is_object()) throw JsonFault{path_ + ": not an object"};
}

std::string JsonObject::pathTo(std::string_view name) const {
  std::string path = path_;
  if (!path.empty()) path += '.';
  return path.append(name);
}

void JsonObject::refuse(std::string_view name, std::string_view fault) const {
  throw JsonFault{pathTo(name).append(": ").append(fault)};
}

const json* JsonObject::find(std::string_view name) const {
  const auto field = object_->find(name);
  return field == object_->end() || field->is_null() ? nullptr : &*field;
}

std::string JsonObject::text(std::string_view name) const { return required(optionalText(name), name); }

std::optional<std::string> JsonObject::optionalText(std::string_view name) const {
  const json* value = find(name);
  if (value == nullptr) return std::nullopt;
  if (!value->is_string()) refuse(name, "not a text");
  return value->get<std::string>();
}

std::vector<std::string> JsonObject::texts(std::string_view name) const {
  std::vector<std::string> all;
  for (const json& value : array(name)) {
    if (!value.is_string()) refuse(name, "not an array of texts");
    all.push_back(value.get<std::string>());
  }
  return all;
}

std::int64_t JsonObject::integer(std::string_view name) const { return required(optionalInteger(name), name); }

std::optional<std::int64_t> JsonObject::optionalInteger(std::string_view name) const {
  const json* value = find(name);
  if (value == nullptr) return std::nullopt;
  return integerOf(*value, name);
}

std::int64_t JsonObject::integerOf(const json& value, std::string_view name) const {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (std::in_range<std::int64_t>(number)) return static_cast<std::int64_t>(number);
  } else if (value.is_number_integer()) {
    return value.get<std::int64_t>();
  } else if (value.is_number_float()) {
    if (const auto whole = wholeNumber(value.get<double>())) return *whole;
  }
  refuse(name, "not an integer of 64 bits");
}

const json& JsonObject::array(std::string_view name) const {
  const json* value = find(name);
  if (value == nullptr) refuse(name, "missing");
  if (!value->is_array()) refuse(name, "not an array");
  return *value;
}

std::vector<std::int64_t> JsonObject::integers(std::string_view name) const {
  std::vector<std::int64_t> numbers;
  for (const json& value : array(name)) numbers.push_back(integerOf(value, name));
  return numbers;
}

std::optional<double> JsonObject::optionalNumber(std::string_view name) const {
  const json* value = find(name);
  if (value == nullptr) return std::nullopt;
  if (!value->is_number() || !std::isfinite(value->get<double>())) refuse(name, "not a number");
  return value->get<double>();
}

std::optional<bool> JsonObject::optionalFlag(std::string_view name) const {
  const json* value = find(name);
  if (value == nullptr) return std::nullopt;
  if (!value->is_boolean()) refuse(name, "not true or false");
  return value->get<bool>();
}

std::optional<JsonObject> JsonObject::optionalObject(std::string_view name) const {
  const json* value = find(name);
  if (value == nullptr) return std::nullopt;
  return JsonObject(*value, pathTo(name));
}

std::vector<JsonObject> JsonObject::objects(std::string_view name) const {
  std::vector<JsonObject> all;
  const json& values = array(name);
  all.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    all.emplace_back(values[i], pathTo(name) + "[" + std::to_string(i) + "]");
  }
  return all;
}

}  // namespace base
