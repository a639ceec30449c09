// Notices that the network is back, by what the kernel reports of addresses and routes (rtnetlink(7)).
#pragma once

#include "base/descriptors/file_descriptor.hpp"

namespace host {

class NetworkChanges {
 public:
  NetworkChanges();

  int descriptor() const { return socket_.get(); }
  /// Whether something changed and there is a network now: an interface other than the loopback that is up and has an
  /// address which leads further than its own link.
  bool take();

 private:
  base::FileDescriptor socket_;
};

}  // namespace host
