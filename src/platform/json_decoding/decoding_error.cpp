#include "platform/json_decoding/decoding_error.hpp"

#include <utility>

namespace platform {
namespace {

DecodingError inside(DecodingError error, std::string step) {
  if (!error.codingPath.empty() && error.codingPath.front() != '[') step += '.';
  error.codingPath.insert(0, step);
  return error;
}

}  // namespace

DecodingError insideKey(DecodingError error, std::string_view key) {
  return inside(std::move(error), std::string(key));
}

DecodingError insideElement(DecodingError error, std::size_t index) {
  std::string step = "[";
  step += std::to_string(index);
  step += ']';
  return inside(std::move(error), std::move(step));
}

}  // namespace platform
