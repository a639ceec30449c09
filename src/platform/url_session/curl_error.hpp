// libcurl's result codes as transport errors.
#pragma once

#include <curl/curl.h>

#include "platform/url_session/load_result.hpp"

namespace platform {

/// `detail` is libcurl's error buffer, which may name addresses and quote the server. Only what it says about a
/// certificate is taken from it; otherwise the description is the code's own sentence.
TransportError transportError(CURLcode code, const char* detail);

}  // namespace platform
