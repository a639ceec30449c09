// Why a load ended without a response. An answer with an error status is no transport error.
#pragma once

#include <string>

namespace platform {

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
    /// The connection ended, or what came was not HTTP, before the response was whole.
    connectionLost,
    /// The body is longer than the session takes.
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

}  // namespace platform
