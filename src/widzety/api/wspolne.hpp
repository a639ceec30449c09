// What every request of the process shares, made once on first use and then only read.
#pragma once

#include "platform/json_decoding/json_decoder.hpp"
#include "platform/url_session/url_session.hpp"

namespace widzety {

/// The HTTP session: nothing on disk, no cookies, 12 s without a byte and 12 s in all.
const platform::UrlSession& wspolnaSesja();

/// The decoder with the service's date rule.
const platform::JsonDecoder& wspolnyDekoder();

}  // namespace widzety
