// JSON numbers (RFC 8259, section 6) as the text that stands in the body: whether it is one, and which integer it is.
// Nothing goes through floating point, so no digit is lost.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace platform {

/// Whether the whole text is a number by the grammar: -0 and 1e999 are, 01, 1., .5, +1 and NaN are not.
bool isJsonNumber(std::string_view text);

/// The value of a number, however it is written (7, 7.0, 70e-1), when it is integral and fits 64 signed bits; absent
/// for any other. `number` must be a number by `isJsonNumber`.
std::optional<std::int64_t> integerOfJsonNumber(std::string_view number);

}  // namespace platform
