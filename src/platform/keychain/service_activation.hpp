// Asks the bus once to start a service. On desktops that do not start the keyring in the session, a keyring daemon that
// the login (PAM) started takes its name on the bus only when it is activated.
#pragma once

#include <condition_variable>
#include <mutex>

#include "base/tasks/deadline.hpp"
#include "platform/keychain/session_bus.hpp"

namespace platform {

/// Safe to use from many threads: one asks, the others wait for its answer.
class ServiceActivation {
 public:
  /// Whether the service has been started, now or earlier, so that the failed call should be tried again. A service
  /// that could not be started is not started again: each read would cost a new process.
  BusResult<bool> startOnce(SessionBus& bus, const char* name, const base::Deadline& deadline);

 private:
  enum class State { untried, underWay, tried };

  std::mutex mutex_;
  std::condition_variable changed_;
  State state_ = State::untried;
  bool started_ = false;
};

}  // namespace platform
