// Converts header fields to libcurl's form, and refuses those that could become more than one field.
#pragma once

#include <expected>
#include <vector>

#include "base/text/secret_text.hpp"
#include "platform/url_session/load_result.hpp"
#include "platform/url_session/url_request.hpp"

namespace platform {

struct RequestHeaders {
  /// One text for each field, in the order in which they are sent.
  std::vector<base::SecretText> lines;

  /// Whether the last field's value ends in a line end. It can be sent over HTTP/1.1 only: HTTP/2 forbids it
  /// (RFC 9113, 8.2.1), and the library would split it there.
  bool endsInLineEnd = false;

  /// `badHeader` for a name that is not a token (RFC 9110, 5.1) and for a value with a NUL or with anything behind a
  /// line end. A value may end in one line end (CR LF, LF or CR). Such a field is sent last: a server that treats the
  /// line end as the end of the field then sees the blank line that ends the header section, and no injected field. A
  /// second such field would be followed by another, so it is `badHeader`. The server is also asked to close the
  /// connection, so that left-over bytes cannot become the beginning of another request.
  static std::expected<RequestHeaders, TransportError> encode(const std::vector<HeaderField>& fields);
};

}  // namespace platform
