// TCP sockets that listen on 127.0.0.1, on a port of the system's choice.
#pragma once

#include <cstdint>

#include "base/descriptors/file_descriptor.hpp"

namespace support {

struct LoopbackListener {
  base::FileDescriptor socket;
  std::uint16_t port = 0;

  /// Throws std::system_error: a test that cannot listen has nothing to say.
  static LoopbackListener open(int backlog);
};

/// A listener whose queue is full and never emptied: whoever connects waits for ever.
class FullListener {
 public:
  FullListener();
  std::uint16_t port() const { return listener_.port; }

 private:
  LoopbackListener listener_;
  base::FileDescriptor waiting_[8];
};

}  // namespace support
