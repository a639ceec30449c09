#include "platform/json_decoding/json_decoder.hpp"

#include <algorithm>
#include <string>

#include <simdjson.h>

#include "base/text/json_strings.hpp"

namespace platform {
namespace {

namespace dom = simdjson::dom;

/// Whether arrays and objects stand more than `levels` deep inside one another.
bool nestsDeeperThan(int levels, const dom::element& value) {
  dom::array array;
  dom::object object;
  if (value.get(array) == simdjson::SUCCESS) {
    return levels == 0 ||
           std::any_of(array.begin(), array.end(), [&](auto element) { return nestsDeeperThan(levels - 1, element); });
  }
  if (value.get(object) == simdjson::SUCCESS) {
    return levels == 0 || std::any_of(object.begin(), object.end(),
                                      [&](auto field) { return nestsDeeperThan(levels - 1, field.value); });
  }
  return false;
}

Decoded notJson(std::string_view reason) {
  return std::unexpected(
      DecodingError{DecodingError::Kind::dataCorrupted, {}, "the body is not valid JSON: " + std::string(reason)});
}

/// How many values a body holds at most: one more than the commas and opening brackets outside its strings.
std::size_t valuesIn(std::string_view body) {
  base::JsonStrings strings;
  return 1 + static_cast<std::size_t>(std::ranges::count_if(body, [&](char byte) {
           return strings.isOutside(byte) && (byte == ',' || byte == '[' || byte == '{');
         }));
}

/// Bodies above this size are decoded one after another.
constexpr std::size_t largeBody = std::size_t{1} << 20;

}  // namespace

Decoded JsonDecoder::withRoot(std::string_view body, absl::FunctionRef<Decoded(const JsonValue&)> read) const {
  std::unique_lock oneAtATime(largeBodies_, std::defer_lock);
  if (body.size() > largeBody) {
    oneAtATime.lock();
    if (valuesIn(body) > mostValuesDecoded) return notJson("it holds too many values");
  }
  dom::parser parser;
  dom::element root;
  // The parser counts the levels that hold something, and one more for the document.
  auto error = parser.allocate(body.size(), maximumNesting + 1);
  if (error == simdjson::SUCCESS) error = parser.parse(body.data(), body.size()).get(root);
  if (error != simdjson::SUCCESS) return notJson(simdjson::error_message(error));
  if (nestsDeeperThan(maximumNesting, root)) return notJson(simdjson::error_message(simdjson::DEPTH_ERROR));
  return read(JsonValue(root, dates_));
}

}  // namespace platform
