// Whether the tests are built with a sanitizer, which takes memory and time of its own.
#pragma once

namespace support {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

}  // namespace support
