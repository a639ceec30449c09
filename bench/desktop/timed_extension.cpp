// Stands between a host and its extension and writes to standard error when the answer to a timeline passes by: "the
// timeline is answered". The variable TIMED_EXTENSION names the extension. It costs the host a few microseconds a line.
#include <cstdlib>
#include <string_view>

#include <poll.h>
#include <unistd.h>

#include "base/descriptors/write_all.hpp"

int main() {
  const char* const program = std::getenv("TIMED_EXTENSION");
  int toExtension[2];
  int fromExtension[2];
  if (program == nullptr || pipe(toExtension) != 0 || pipe(fromExtension) != 0) return 2;
  if (fork() == 0) {
    dup2(toExtension[0], STDIN_FILENO);
    dup2(fromExtension[1], STDOUT_FILENO);
    for (const int end : {toExtension[0], toExtension[1], fromExtension[0], fromExtension[1]}) close(end);
    execl(program, program, nullptr);
    _exit(127);
  }
  close(toExtension[0]);
  close(fromExtension[1]);
  static char buffer[1 << 20];
  pollfd both[] = {{STDIN_FILENO, POLLIN, 0}, {fromExtension[0], POLLIN, 0}};
  while (poll(both, 2, -1) > 0) {
    if (both[1].revents != 0) {
      const auto count = read(fromExtension[0], buffer, sizeof buffer);
      if (count <= 0) return 0;
      const std::string_view bytes(buffer, static_cast<std::size_t>(count));
      if (bytes.find("\"policy\"") != std::string_view::npos) {
        base::writeAll(STDERR_FILENO, "the timeline is answered\n");
      }
      if (base::writeAll(STDOUT_FILENO, bytes)) return 0;
    }
    if (both[0].revents != 0) {
      const auto count = read(STDIN_FILENO, buffer, sizeof buffer);
      if (count <= 0) {
        close(toExtension[1]);
        both[0].fd = -1;
      } else {
        base::writeAll(toExtension[1], {buffer, static_cast<std::size_t>(count)});
      }
    }
  }
}
