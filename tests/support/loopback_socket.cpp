#include "support/loopback_socket.hpp"

#include <cerrno>
#include <system_error>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace support {
namespace {

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  return address;
}

}  // namespace

LoopbackListener LoopbackListener::open(int backlog) {
  LoopbackListener listener{base::FileDescriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), 0};
  sockaddr_in address = loopback(0);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener.socket.get(), generic, length) != 0 || listen(listener.socket.get(), backlog) != 0 ||
      getsockname(listener.socket.get(), generic, &length) != 0) {
    throw std::system_error(errno, std::generic_category(), "cannot listen on loopback");
  }
  listener.port = ntohs(address.sin_port);
  return listener;
}

FullListener::FullListener() : listener_(LoopbackListener::open(0)) {
  sockaddr_in address = loopback(listener_.port);
  for (base::FileDescriptor& each : waiting_) {
    each.reset(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    connect(each.get(), reinterpret_cast<sockaddr*>(&address), sizeof address);  // in progress is what is wanted
  }
}

}  // namespace support
