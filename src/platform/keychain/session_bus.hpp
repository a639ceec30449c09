// A private connection to the session's message bus on which no step, not even connecting and authenticating, waits
// past a deadline. Knows D-Bus, but nothing of the services behind it.
#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

#include "base/tasks/deadline.hpp"

namespace platform {

struct BusFailure {
  enum class Kind {
    absent,    // no bus, or nobody on the bus owns the name
    timedOut,  // the deadline passed
    error,     // the other side answered with an error
    broken,    // the connection ended, or a message has an unexpected form
  };
  Kind kind = Kind::broken;
  std::string errorName;  // of an `error`: "org.freedesktop.DBus.Error.UnknownMethod"
};

template <class T>
using BusResult = std::expected<T, BusFailure>;

struct ReleaseMessage {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
/// One reference to a message.
using BusMessage = std::unique_ptr<sd_bus_message, ReleaseMessage>;

struct BusMethod {
  const char* destination;
  std::string path;
  const char* interface;
  const char* member;
};

/// Appends a call's arguments; the result is negative where sd-bus fails.
using AppendArguments = std::function<int(sd_bus_message*)>;

/// Used by one thread. A signal interrupts a wait, which is then resumed.
class SessionBus {
 public:
  /// `address` is a D-Bus address list, separated by ';'. Only Unix sockets are tried: other transports look up host
  /// names or start programs, and neither ends by a deadline.
  static BusResult<SessionBus> connect(const std::string& address, const base::Deadline& deadline);

  /// Sends the call and waits for its answer. Never makes the bus start the destination. The answer's bytes are
  /// overwritten in memory when it is released.
  BusResult<BusMessage> call(const BusMethod& method, const AppendArguments& append, const base::Deadline& deadline);

  /// Readable, for poll(2), once something has arrived.
  int descriptor() const { return sd_bus_get_fd(bus_.get()); }
  /// Handles what has arrived without waiting. Returns whether that included a signal that was subscribed to
  /// (AddMatch).
  BusResult<bool> takeSignals();

 private:
  /// Does not flush: nobody waits for the answer to a call that was not sent.
  struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };

  explicit SessionBus(sd_bus* bus) : bus_(bus) {}
  BusResult<void> step(const base::Deadline& deadline);

  std::unique_ptr<sd_bus, CloseBus> bus_;
};

}  // namespace platform
