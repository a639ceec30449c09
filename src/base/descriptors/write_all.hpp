// Writes all bytes to a descriptor.
#pragma once

#include <cerrno>
#include <string_view>
#include <system_error>

#include <poll.h>
#include <unistd.h>

namespace base {

/// Returns when all of `bytes` is written, or the first error. Waits where a non-blocking descriptor is full: another
/// process that shares the terminal or pipe may have made it non-blocking.
inline std::error_code writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      pollfd full{.fd = descriptor, .events = POLLOUT, .revents = 0};
      if (::poll(&full, 1, -1) < 0 && errno != EINTR) return {errno, std::generic_category()};
    } else if (errno != EINTR) {
      return {errno, std::generic_category()};
    }
  }
  return {};
}

}  // namespace base
