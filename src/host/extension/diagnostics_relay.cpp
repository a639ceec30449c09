#include "host/extension/diagnostics_relay.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "host/diagnostics/diagnostics.hpp"

namespace host {
namespace {

// A pipe that is ready for writing takes this much without blocking (pipe(7), PIPE_BUF).
constexpr std::size_t blockSize = 4096;
// A child that writes without end must not block its host.
constexpr int mostBlocksAtOnce = 64;

}  // namespace

DiagnosticsRelay::DiagnosticsRelay(int to)
    : to_(to), linePrefix_(leadsToJournal(to) ? prefixOf(Priority::warning) : std::string_view()) {}

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
  std::string shown = printable_.pass(std::string_view(bytes, allowed));
  if (written_ == most) shown += printable_.finish() + "\n";
  std::string text;
  for (const char c : shown) {
    if (std::exchange(atLineStart_, c == '\n')) text += linePrefix_;
    text += c;
  }
  for (std::string_view rest = text; !rest.empty(); rest.remove_prefix(std::min(rest.size(), blockSize))) {
    pollfd entry{.fd = to_, .events = POLLOUT, .revents = 0};
    // Failing to write diagnostics is not an error.
    if (::poll(&entry, 1, 0) != 1 || (entry.revents & POLLOUT) == 0) return;
    [[maybe_unused]] const ssize_t ignored = ::write(to_, rest.data(), std::min(rest.size(), blockSize));
  }
}

}  // namespace host
