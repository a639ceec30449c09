#include "protocol/json_rpc/line_writer.hpp"

#include <array>
#include <cassert>
#include <cerrno>
#include <string>

#include <poll.h>
#include <sys/uio.h>

namespace protocol::json_rpc {
namespace {

// The descriptor may be shared with a process that made it non-blocking (a terminal is), so a full one is waited for.
std::error_code waitUntilWritable(int descriptor) {
  pollfd entry{.fd = descriptor, .events = POLLOUT, .revents = 0};
  if (::poll(&entry, 1, -1) < 0 && errno != EINTR) return {errno, std::generic_category()};
  return {};
}

std::error_code writeAll(int descriptor, std::string_view line) {
  char lineEnd = '\n';
  std::size_t written = 0;
  while (written <= line.size()) {
    std::string_view rest = line.substr(written);
    std::array<iovec, 2> parts{iovec{.iov_base = const_cast<char*>(rest.data()), .iov_len = rest.size()},
                               iovec{.iov_base = &lineEnd, .iov_len = 1}};
    const ssize_t count = ::writev(descriptor, parts.data(), static_cast<int>(parts.size()));
    if (count >= 0) {
      written += static_cast<std::size_t>(count);
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      if (const std::error_code error = waitUntilWritable(descriptor)) return error;
    } else if (errno != EINTR) {
      return {errno, std::generic_category()};
    }
  }
  return {};
}

}  // namespace

std::expected<void, std::error_code> LineWriter::write(std::string_view line) {
  assert(line.find('\n') == std::string_view::npos);
  const std::lock_guard lock(mutex_);
  if (!failure_) failure_ = writeAll(descriptor_, line);
  if (failure_) return std::unexpected(failure_);
  return {};
}

}  // namespace protocol::json_rpc
