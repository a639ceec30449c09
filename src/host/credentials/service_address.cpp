#include "host/credentials/service_address.hpp"

namespace host {

std::optional<platform::Url> serviceAddress(const std::string& text) {
  auto url = platform::Url::parse(text);
  if (!url || !url->host() || (url->scheme() != "http" && url->scheme() != "https")) return std::nullopt;
  return url;
}

}  // namespace host
