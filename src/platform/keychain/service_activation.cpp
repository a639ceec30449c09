#include "platform/keychain/service_activation.hpp"

#include <cstdint>

namespace platform {
namespace {

BusResult<void> startService(SessionBus& bus, const char* name, const base::Deadline& deadline) {
  const BusMethod method{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "StartServiceByName"};
  const auto answer = bus.call(
      method, [name](sd_bus_message* message) { return sd_bus_message_append(message, "su", name, std::uint32_t{0}); },
      deadline);
  if (!answer) return std::unexpected(answer.error());
  return {};
}

}  // namespace

BusResult<bool> ServiceActivation::startOnce(SessionBus& bus, const char* name, const base::Deadline& deadline) {
  std::unique_lock lock(mutex_);
  if (state_ == State::untried) {
    state_ = State::underWay;
    lock.unlock();
    const auto outcome = startService(bus, name, deadline);
    lock.lock();
    state_ = State::tried;
    started_ = outcome.has_value();
    changed_.notify_all();
    if (!outcome && outcome.error().kind == BusFailure::Kind::timedOut) return std::unexpected(outcome.error());
    return started_;
  }
  if (!changed_.wait_until(lock, deadline.end(), [this] { return state_ == State::tried; })) {
    return std::unexpected(BusFailure{BusFailure::Kind::timedOut, {}});
  }
  return started_;
}

}  // namespace platform
