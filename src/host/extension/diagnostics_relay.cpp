#include "host/extension/diagnostics_relay.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <string_view>

#include <poll.h>
#include <unistd.h>

#include "host/extension/printable.hpp"

namespace host {
namespace {

// A pipe that is ready for writing takes this much without blocking (pipe(7), PIPE_BUF).
constexpr std::size_t blockSize = 4096;
// A child that writes without end must not keep its host from everything else.
constexpr int mostBlocksAtOnce = 64;

}  // namespace

bool DiagnosticsRelay::pump(int from) {
  std::array<char, blockSize> block;
  for (int i = 0; i < mostBlocksAtOnce; ++i) {
    const ssize_t count = ::read(from, block.data(), block.size());
    if (count == 0) return false;
    if (count < 0) return errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK;
    write(block.data(), static_cast<std::size_t>(count));
  }
  return true;
}

void DiagnosticsRelay::write(const char* bytes, std::size_t count) {
  const std::size_t allowed = std::min(count, most - written_);
  if (to_ < 0 || allowed == 0) return;
  written_ += allowed;
  std::string text = printable(std::string_view(bytes, allowed));
  if (written_ == most) text += "\n";
  pollfd entry{.fd = to_, .events = POLLOUT, .revents = 0};
  if (::poll(&entry, 1, 0) == 1 && (entry.revents & POLLOUT) != 0) {
    // Diagnostics that nobody takes are no reason to fail.
    [[maybe_unused]] const ssize_t ignored = ::write(to_, text.data(), text.size());
  }
}

}  // namespace host
