#include "host/recovery/network_changes.hpp"

#include <array>
#include <cerrno>
#include <memory>

#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace host {
namespace {

bool leadsFurther(const sockaddr* address) {
  if (address == nullptr) return false;
  if (address->sa_family == AF_INET) return true;
  if (address->sa_family != AF_INET6) return false;
  const auto& bytes = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
  return !IN6_IS_ADDR_LINKLOCAL(&bytes);
}

bool networkIsThere() {
  ifaddrs* first = nullptr;
  if (getifaddrs(&first) != 0) return true;  // better one load too many
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, &freeifaddrs);
  for (const ifaddrs* each = first; each != nullptr; each = each->ifa_next) {
    const bool up = (each->ifa_flags & IFF_UP) != 0 && (each->ifa_flags & IFF_RUNNING) != 0;
    if (up && (each->ifa_flags & IFF_LOOPBACK) == 0 && leadsFurther(each->ifa_addr)) return true;
  }
  return false;
}

}  // namespace

NetworkChanges::NetworkChanges()
    : socket_(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE)) {
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_ROUTE;
  if (!socket_.isOpen()) return;
  if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) socket_.reset();
}

bool NetworkChanges::take() {
  std::array<char, 8192> message;
  bool changed = false;
  while (socket_.isOpen()) {
    const ssize_t count = ::recv(socket_.get(), message.data(), message.size(), 0);
    if (count == 0) break;
    // ENOBUFS: so much was reported that some of it is lost.
    if (count < 0 && errno != ENOBUFS && errno != EINTR) break;
    changed = true;
  }
  return changed && networkIsThere();
}

}  // namespace host
