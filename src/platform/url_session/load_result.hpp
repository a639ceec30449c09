// The result of a load: the server's answer, whatever its status, or the reason why there is none.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>

namespace platform {

struct UrlResponse {
  /// Absent when the exchange ended properly but without an HTTP status, as an HTTP/0.9 answer does.
  std::optional<std::int64_t> statusCode;

  bool operator==(const UrlResponse&) const = default;
};

struct DataAndResponse {
  std::string data;  ///< the body as it came
  UrlResponse response;
};

struct TransportError {
  enum class Kind {
    timedOut,
    cancelled,
    cannotResolve,
    cannotConnect,
    secureConnectionFailed,
    /// Not http or https, or no host. Nothing was sent.
    unsupportedUrl,
    /// A header field that cannot be sent as it is. Nothing of the request was sent.
    badHeader,
    /// The connection ended before the response was complete, or the server did not speak HTTP.
    connectionLost,
    /// The body is longer than the session's limit.
    tooLarge,
    other,
  };

  Kind kind = Kind::other;

  /// The HTTP library's own number (CURLcode); 0 where the session itself ended the load.
  int code = 0;

  /// One English line for a log. Holds no header value.
  std::string description;

  bool operator==(const TransportError&) const = default;
};

using LoadResult = std::expected<DataAndResponse, TransportError>;

}  // namespace platform
