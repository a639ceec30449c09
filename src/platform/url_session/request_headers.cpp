#include "platform/url_session/request_headers.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/url/ascii.hpp"

namespace platform {
namespace {

bool isToken(std::string_view name) {
  return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
    return ascii::isLetterOrDigit(c) || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
  });
}

std::string_view withoutLineEnd(std::string_view value) {
  for (const std::string_view lineEnd : {"\r\n", "\n", "\r"}) {
    if (value.ends_with(lineEnd)) return value.substr(0, value.size() - lineEnd.size());
  }
  return value;
}

// libcurl takes "Name:" as an order to omit the field, and sends "Name;" as an empty one.
base::SecretText fieldLine(const HeaderField& field) {
  const bool blank = field.value.text().find_first_not_of(" \t\v\f\r\n") == std::string_view::npos;
  if (blank) return {field.name, ";"};
  return {field.name, ": ", field.value.text()};
}

std::unexpected<TransportError> badHeader(std::string_view name, std::string_view why) {
  return std::unexpected(
      TransportError{TransportError::Kind::badHeader, 0, std::string(name).append(": ").append(why)});
}

}  // namespace

std::expected<RequestHeaders, TransportError> RequestHeaders::encode(const std::vector<HeaderField>& fields) {
  RequestHeaders headers;
  base::SecretText last;
  for (const HeaderField& field : fields) {
    if (!isToken(field.name)) return badHeader("header field", "the name is no token");
    const std::string_view content = withoutLineEnd(field.value.text());
    if (content.find_first_of(std::string_view("\0\r\n", 3)) != std::string_view::npos) {
      return badHeader(field.name, "the value holds a NUL or a line end");
    }
    base::SecretText line = fieldLine(field);
    if (!line.text().ends_with('\n') && !line.text().ends_with('\r')) {
      headers.lines.push_back(std::move(line));
    } else if (last.empty()) {
      last = std::move(line);
    } else {
      return badHeader(field.name, "a second value that ends in a line end");
    }
  }
  if (!last.empty()) {
    headers.lines.push_back("Connection: close");
    headers.lines.push_back(std::move(last));
    headers.endsInLineEnd = true;
  }
  return headers;
}

}  // namespace platform
