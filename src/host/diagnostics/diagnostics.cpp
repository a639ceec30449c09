#include "host/diagnostics/diagnostics.hpp"

#include <array>
#include <cstdlib>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace host {

bool leadsToJournal(int descriptor) {
  const char* const stream = std::getenv("JOURNAL_STREAM");
  struct stat status{};
  if (stream == nullptr || fstat(descriptor, &status) != 0) return false;
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino) == stream;
}

std::string_view prefixOf(Priority priority) {
  constexpr std::array<std::string_view, 8> prefixes{"<0>", "<1>", "<2>", "<3>", "<4>", "<5>", "<6>", "<7>"};
  return prefixes[static_cast<std::size_t>(priority)];
}

void say(Priority priority, std::string_view sentence) {
  std::string line = leadsToJournal(STDERR_FILENO) ? std::string(prefixOf(priority)) : std::string();
  line.append("vamba-host: ").append(sentence).append("\n");
  // One write, so that lines of several processes do not mix. Failing to write diagnostics is not an error.
  [[maybe_unused]] const ssize_t ignored = ::write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace host
