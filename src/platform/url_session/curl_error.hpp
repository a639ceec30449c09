// libcurl's result codes as transport errors.
#pragma once

#include <curl/curl.h>

#include "platform/url_session/transport_error.hpp"

namespace platform {

/// `detail` is libcurl's error buffer; where it is empty the code's own sentence is taken.
TransportError transportError(CURLcode code, const char* detail);

}  // namespace platform
