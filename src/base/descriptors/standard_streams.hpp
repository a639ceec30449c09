// The three streams that a program is started with.
#pragma once

#include <array>

#include <fcntl.h>
#include <unistd.h>

namespace base {

/// Opens /dev/null in place of those that are closed: what is opened later must not take their numbers, or a message
/// meant for a person goes into it. Reading from or writing to what was closed still fails, diagnostics apart. For the
/// first line of a program.
inline void fillStandardStreams() {
  constexpr std::array modes{O_WRONLY, O_RDONLY, O_WRONLY};
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // The lowest free number is the one that is missing.
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", modes[static_cast<std::size_t>(stream)]);
  }
}

}  // namespace base
