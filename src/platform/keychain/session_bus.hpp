// A private connection to the session's message bus on which no step, not even connecting and signing on, waits past
// a deadline. Knows D-Bus; what the calls mean is left to its users.
#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "platform/keychain/deadline.hpp"
#include "platform/keychain/sd_bus_library.hpp"

namespace platform {

struct BusFailure {
  enum class Kind {
    absent,    // no bus, no library to speak with it, or nobody on the bus bears the name
    timedOut,  // the deadline passed
    error,     // the other side answered with an error
    broken,    // the connection ended, or a message is not what it should be
  };
  Kind kind = Kind::broken;
  std::string errorName;  // of an `error`: "org.freedesktop.DBus.Error.UnknownMethod"
};

template <class T>
using BusResult = std::expected<T, BusFailure>;

/// Owns one reference to a message.
class BusMessage {
 public:
  BusMessage(const SdBusLibrary& library, sd_bus_message* message) : library_(&library), message_(message) {}
  BusMessage(BusMessage&& other) noexcept;
  BusMessage& operator=(BusMessage&& other) noexcept;
  ~BusMessage();

  sd_bus_message* get() const { return message_; }
  const SdBusLibrary& library() const { return *library_; }

 private:
  const SdBusLibrary* library_;
  sd_bus_message* message_;
};

struct BusMethod {
  const char* destination;
  std::string path;
  const char* interface;
  const char* member;
};

/// Appends a call's arguments; a negative result as sd-bus gives it.
using AppendArguments = std::function<int(const SdBusLibrary&, sd_bus_message*)>;

/// Used by one thread. Signals that arrive meanwhile only cut a wait short, which then goes on.
class SessionBus {
 public:
  /// `address` as D-Bus writes it, a list parted by ';'. Only Unix sockets are tried: other transports look up host
  /// names or start programs, and neither ends by a deadline.
  static BusResult<SessionBus> connect(const std::string& address, const Deadline& deadline);

  SessionBus(SessionBus&& other) noexcept;
  SessionBus& operator=(SessionBus&&) = delete;
  ~SessionBus();

  /// Sends the call and waits for its answer. Never makes the bus start the destination. The answer's bytes are
  /// overwritten in memory when it is released.
  BusResult<BusMessage> call(const BusMethod& method, const AppendArguments& append, const Deadline& deadline);

 private:
  SessionBus(const SdBusLibrary& library, sd_bus* bus) : library_(&library), bus_(bus) {}
  BusResult<void> step(const Deadline& deadline);

  const SdBusLibrary* library_;
  sd_bus* bus_;
};

}  // namespace platform
