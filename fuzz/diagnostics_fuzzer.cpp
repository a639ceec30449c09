// An extension's standard error in two pieces, cut anywhere: the host prints no control character of it, and no more
// than the relay's limit. The first byte chooses the cut.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "base/text/control_characters.hpp"
#include "host/extension/diagnostics_relay.hpp"
#include "require.hpp"

namespace {

using fuzz::require;

struct Pipe {
  int ends[2];
  Pipe() { require(::pipe2(ends, O_NONBLOCK | O_CLOEXEC) == 0); }
};

void write(const Pipe& pipe, std::string_view bytes) {
  require(::write(pipe.ends[1], bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
}

std::string read(const Pipe& pipe) {
  std::string bytes(1 << 16, '\0');
  const ssize_t count = ::read(pipe.ends[0], bytes.data(), bytes.size());
  bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Pipe from;
  static const Pipe to;
  if (size == 0 || size > 4096) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t cut = std::min<std::size_t>(data[0], bytes.size());
  host::DiagnosticsRelay relay(to.ends[1]);
  for (const std::string_view piece : {bytes.substr(0, cut), bytes.substr(cut)}) {
    if (piece.empty()) continue;
    write(from, piece);
    require(relay.pump(from.ends[0]));
  }
  std::string shown = read(to);
  std::erase(shown, '\n');
  std::erase(shown, '\t');
  require(!base::holdsControl(shown));
  require(shown.size() <= host::DiagnosticsRelay::most);
  return 0;
}
