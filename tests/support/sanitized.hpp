// Whether the tests are built with a sanitizer, which takes memory and time of its own.
#pragma once

namespace support {

#ifdef VAMBA_SANITIZED
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif

}  // namespace support
