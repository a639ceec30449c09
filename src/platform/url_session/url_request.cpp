#include "platform/url_session/url_request.hpp"

#include <algorithm>
#include <utility>

#include "platform/url/ascii.hpp"

namespace platform {

void UrlRequest::setValue(base::SecretText value, std::string_view field) {
  const auto found = std::find_if(headers.begin(), headers.end(), [&](const HeaderField& header) {
    return ascii::equalsIgnoringCase(header.name, field);
  });
  if (found == headers.end()) {
    headers.push_back({std::string(field), std::move(value)});
  } else {
    found->value = std::move(value);
  }
}

}  // namespace platform
