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

struct PendingAnswer {
  const SdBusLibrary* library;
  sd_bus_message* message = nullptr;
};

int keepAnswer(sd_bus_message* message, void* pending, sd_bus_error*) {
  auto& answer = *static_cast<PendingAnswer*>(pending);
  answer.library->sensitive(message);
  answer.message = answer.library->messageRef(message);
  return 1;
}

}  // namespace

BusMessage::BusMessage(BusMessage&& other) noexcept
    : library_(other.library_), message_(std::exchange(other.message_, nullptr)) {}

BusMessage& BusMessage::operator=(BusMessage&& other) noexcept {
  std::swap(library_, other.library_);
  std::swap(message_, other.message_);
  return *this;
}

BusMessage::~BusMessage() { library_->messageUnref(message_); }

SessionBus::SessionBus(SessionBus&& other) noexcept
    : library_(other.library_), bus_(std::exchange(other.bus_, nullptr)) {}

// Nothing is flushed: whatever is still unsent is a call that nobody waits for any more.
SessionBus::~SessionBus() {
  if (bus_ != nullptr) library_->closeUnref(bus_);
}

BusResult<SessionBus> SessionBus::connect(const std::string& address, const Deadline& deadline) {
  const auto reachable = unixAddressesOf(address);
  if (reachable.empty()) return failure(Kind::absent);
  const SdBusLibrary* library = sdBusLibrary();
  if (library == nullptr) return failure(Kind::absent);
  sd_bus* raw = nullptr;
  if (library->newBus(&raw) < 0) return failure(Kind::broken);
  SessionBus bus(*library, raw);
  if (library->setAddress(raw, reachable.c_str()) < 0) return failure(Kind::absent);
  if (library->setBusClient(raw, 1) < 0) return failure(Kind::broken);
  if (const int started = library->start(raw); started < 0) {
    // A full queue of connections that nobody accepts is a bus that hangs, not one that is missing.
    return failure(started == -EAGAIN ? Kind::timedOut : Kind::absent);
  }
  while (library->isReady(raw) == 0) {
    if (auto stepped = bus.step(deadline); !stepped) {
      if (stepped.error().kind == Kind::timedOut) return std::unexpected(stepped.error());
      return failure(Kind::absent);
    }
  }
  return bus;
}

// Handles one thing that has arrived, or waits for the next. A peer that never stops talking is cut off as well as a
// silent one.
BusResult<void> SessionBus::step(const Deadline& deadline) {
  const int handled = library_->process(bus_, nullptr);
  if (handled == -ETIMEDOUT || deadline.passed()) return failure(Kind::timedOut);
  if (handled < 0 && handled != -EINTR && handled != -EAGAIN) return failure(Kind::broken);
  if (handled != 0) return {};
  const int waited = library_->wait(bus_, static_cast<std::uint64_t>(deadline.left().count()));
  if (waited < 0 && waited != -EINTR && waited != -EAGAIN) return failure(Kind::broken);
  return {};
}

BusResult<BusMessage> SessionBus::call(const BusMethod& method, const AppendArguments& append,
                                       const Deadline& deadline) {
  sd_bus_message* raw = nullptr;
  if (library_->newMethodCall(bus_, &raw, method.destination, method.path.c_str(), method.interface, method.member) <
      0) {
    return failure(Kind::broken);
  }
  const BusMessage question(*library_, raw);
  if (library_->setAutoStart(raw, 0) < 0 || append(*library_, raw) < 0) return failure(Kind::broken);

  PendingAnswer pending{library_};
  sd_bus_slot* slot = nullptr;
  if (library_->callAsync(bus_, &slot, raw, keepAnswer, &pending, UINT64_MAX) < 0) return failure(Kind::broken);
  BusResult<void> stepped;
  while (stepped && pending.message == nullptr) stepped = step(deadline);
  library_->slotUnref(slot);
  BusMessage answer(*library_, pending.message);
  if (answer.get() == nullptr) return std::unexpected(stepped.error());
  if (const sd_bus_error* error = library_->getError(answer.get())) return std::unexpected(failureOf(*error));
  return answer;
}

}  // namespace platform
