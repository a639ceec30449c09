#include "platform/keychain/session_bus.hpp"

#include <cerrno>
#include <cstdint>
#include <string_view>
#include <utility>

namespace platform {
namespace {

using Kind = BusFailure::Kind;

std::unexpected<BusFailure> failure(Kind kind) { return std::unexpected(BusFailure{kind, {}}); }

std::string unixAddressesOf(std::string_view address) {
  std::string kept;
  while (!address.empty()) {
    const auto end = address.find(';');
    const auto one = address.substr(0, end);
    if (one.starts_with("unix:")) kept.append(kept.empty() ? "" : ";").append(one);
    address = end == std::string_view::npos ? std::string_view() : address.substr(end + 1);
  }
  return kept;
}

BusFailure failureOf(const sd_bus_error& error) {
  const std::string_view name = error.name == nullptr ? "" : error.name;
  const bool nobody =
      name == "org.freedesktop.DBus.Error.NameHasNoOwner" || name == "org.freedesktop.DBus.Error.ServiceUnknown";
  return {nobody ? Kind::absent : Kind::error, std::string(name)};
}

int keepAnswer(sd_bus_message* message, void* kept, sd_bus_error*) noexcept {
  sd_bus_message_sensitive(message);
  static_cast<BusMessage*>(kept)->reset(sd_bus_message_ref(message));
  return 1;
}

}  // namespace

BusResult<SessionBus> SessionBus::connect(const std::string& address, const base::Deadline& deadline) {
  const auto reachable = unixAddressesOf(address);
  if (reachable.empty()) return failure(Kind::absent);
  sd_bus* raw = nullptr;
  if (sd_bus_new(&raw) < 0) return failure(Kind::broken);
  SessionBus bus(raw);
  if (sd_bus_set_address(raw, reachable.c_str()) < 0) return failure(Kind::absent);
  if (sd_bus_set_bus_client(raw, 1) < 0) return failure(Kind::broken);
  if (const int started = sd_bus_start(raw); started < 0) {
    // EAGAIN: the socket's queue is full. The bus hangs; it is not missing.
    return failure(started == -EAGAIN ? Kind::timedOut : Kind::absent);
  }
  while (sd_bus_is_ready(raw) == 0) {
    if (auto stepped = bus.step(deadline); !stepped) {
      if (stepped.error().kind == Kind::timedOut) return std::unexpected(stepped.error());
      return failure(Kind::absent);
    }
  }
  return bus;
}

// Handles one message that has arrived, or waits for the next. The deadline also holds for a peer that never stops
// sending.
BusResult<void> SessionBus::step(const base::Deadline& deadline) {
  const int handled = sd_bus_process(bus_.get(), nullptr);
  if (handled == -ETIMEDOUT || deadline.passed()) return failure(Kind::timedOut);
  if (handled < 0 && handled != -EINTR && handled != -EAGAIN) return failure(Kind::broken);
  if (handled != 0) return {};
  const int waited = sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(deadline.left().count()));
  if (waited < 0 && waited != -EINTR && waited != -EAGAIN) return failure(Kind::broken);
  return {};
}

BusResult<BusMessage> SessionBus::call(const BusMethod& method, const AppendArguments& append,
                                       const base::Deadline& deadline) {
  sd_bus_message* raw = nullptr;
  if (sd_bus_message_new_method_call(bus_.get(), &raw, method.destination, method.path.c_str(), method.interface,
                                     method.member) < 0) {
    return failure(Kind::broken);
  }
  const BusMessage question(raw);
  if (sd_bus_message_set_auto_start(raw, 0) < 0 || append(raw) < 0) return failure(Kind::broken);

  BusMessage answer;
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(bus_.get(), &slot, raw, keepAnswer, &answer, UINT64_MAX) < 0) return failure(Kind::broken);
  BusResult<void> stepped;
  while (stepped && !answer) stepped = step(deadline);
  sd_bus_slot_unref(slot);
  if (!answer) return std::unexpected(stepped.error());
  if (const sd_bus_error* error = sd_bus_message_get_error(answer.get())) return std::unexpected(failureOf(*error));
  return answer;
}

BusResult<bool> SessionBus::takeSignals() {
  bool signalled = false;
  while (true) {
    sd_bus_message* raw = nullptr;
    const int handled = sd_bus_process(bus_.get(), &raw);
    const BusMessage message(raw);
    if (handled == -EINTR || handled == -EAGAIN) continue;
    if (handled < 0) return failure(Kind::broken);
    if (handled == 0) return signalled;
    if (!message) continue;
    // The bus tells each connection which names it owns (NameAcquired).
    const bool ownName = sd_bus_message_is_signal(message.get(), "org.freedesktop.DBus", "NameAcquired") > 0 ||
                         sd_bus_message_is_signal(message.get(), "org.freedesktop.DBus", "NameLost") > 0;
    signalled |= !ownName && sd_bus_message_is_signal(message.get(), nullptr, nullptr) > 0;
  }
}

}  // namespace platform
