// What to load: a URL, how long it may take, and the header fields to send. Always a GET without a body.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <absl/time/time.h>

#include "base/tasks/deadline.hpp"
#include "base/text/secret_text.hpp"
#include "platform/url/url.hpp"

namespace platform {

/// Numbered as the widget platform numbers them.
enum class CachePolicy {
  /// What HTTP's own rules say. An ephemeral session has no cache, so every load asks the server.
  useProtocolCachePolicy = 0,
};

struct HeaderField {
  std::string name;
  base::SecretText value;  // may hold a credential

  bool operator==(const HeaderField&) const = default;
};

struct UrlRequest {
  Url url;
  CachePolicy cachePolicy = CachePolicy::useProtocolCachePolicy;

  /// Longest wait without a byte from the server. Must not be shorter than the session's limit for the whole load,
  /// which therefore always ends the load first.
  absl::Duration timeoutInterval = absl::Seconds(60);

  /// Ends the load if it comes before the session's own limit.
  base::Deadline deadline = base::Deadline::never();

  std::vector<HeaderField> headers;

  /// Sets a field, replacing the value of one with this name in any case of letters. The value is sent exactly as it
  /// is; one that HTTP cannot carry makes the load fail with `badHeader`.
  void setValue(base::SecretText value, std::string_view field);
};

}  // namespace platform
