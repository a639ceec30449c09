// RFC 8259 written down the simplest way: one byte after another, one function a production. The decoder is compared
// with it. It also refuses what the decoder cannot hold: numbers out of range and half a surrogate pair.
#pragma once

#include <string_view>

namespace platform {

/// Whether `text` is one JSON value in UTF-8, nested at most `maximumDepth` arrays and objects deep.
bool isJsonBySlowGrammar(std::string_view text, int maximumDepth);

}  // namespace platform
