#include "host/commands/display.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace host {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

/// A name that begins with NUL is one of the abstract namespace (unix(7)).
bool listens(std::string_view socketName) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socketName.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, socketName.data(), socketName.size());
  const base::FileDescriptor client(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!client.isOpen()) return false;
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + socketName.size() +
                                             (socketName.starts_with('\0') ? 0 : 1));
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  return ::connect(client.get(), generic, length) == 0 || errno == EAGAIN;
}

bool waylandReachable() {
  const std::string name = variable("WAYLAND_DISPLAY");
  if (name.empty()) return false;
  return listens(name.starts_with('/') ? name : variable("XDG_RUNTIME_DIR") + "/" + name);
}

bool xReachable() {
  const std::string name = variable("DISPLAY");
  const auto colon = name.rfind(':');
  if (colon == std::string::npos) return false;
  // A display of another machine. Only the toolkit's own connection can tell whether it answers.
  if (colon != 0 && name.substr(0, colon) != "unix") return true;
  const std::string path = "/tmp/.X11-unix/X" + name.substr(colon + 1, name.find('.', colon) - colon - 1);
  return listens(std::string(1, '\0') + path) || listens(path);
}

}  // namespace

bool displayReachable() { return waylandReachable() || xReachable(); }

}  // namespace host
