// What to load: a URL, how long it may take, and the header fields to send. Always a GET without a body.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <absl/time/time.h>

#include "platform/url_session/url.hpp"

namespace platform {

/// Numbered as the widget platform numbers them.
enum class CachePolicy {
  /// What HTTP's own rules say. An ephemeral session has no cache, so every load asks the server.
  useProtocolCachePolicy = 0,
};

struct HeaderField {
  std::string name;
  std::string value;

  bool operator==(const HeaderField&) const = default;
};

struct UrlRequest {
  Url url;
  CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;

  /// Longest wait without a byte from the server. The session's own limit holds where it is shorter.
  absl::Duration timeoutInterval = absl::Seconds(60);

  std::vector<HeaderField> headers;

  /// Sets a field, replacing the value of one with this name in any case of letters. The value is sent exactly as it
  /// is; one that HTTP cannot carry makes the load fail with `badHeader`.
  void setValue(std::string value, std::string_view field);
};

}  // namespace platform
