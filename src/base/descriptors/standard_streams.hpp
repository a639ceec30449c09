// The three streams that a program is started with.
#pragma once

#include <array>

#include <fcntl.h>
#include <unistd.h>

namespace base {

/// Opens /dev/null in place of those that are closed. Otherwise a file that is opened later could get the number 2, and
/// messages would be written into it. The mode is chosen so that reading from a closed input, or writing to a closed
/// output, still fails. Call it in the first line of a program.
inline void fillStandardStreams() {
  constexpr std::array modes{O_WRONLY, O_RDONLY, O_WRONLY};
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // The lowest free number is the one that is missing.
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", modes[static_cast<std::size_t>(stream)]);
  }
}

}  // namespace base
