// What a finished load gives: the body's bytes and the response's status.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

struct UrlResponse {
  /// Absent when the exchange ended properly but without an HTTP status, as an HTTP/0.9 answer does.
  std::optional<std::int64_t> statusCode;

  bool operator==(const UrlResponse&) const = default;
};

struct DataAndResponse {
  /// The body as it came. Its capacity reaches some bytes past its end, for parsers that read ahead in blocks.
  std::string data;
  UrlResponse response;
};

}  // namespace platform
