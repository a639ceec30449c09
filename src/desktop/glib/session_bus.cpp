#include "desktop/glib/session_bus.hpp"

#include <cstdlib>
#include <memory>
#include <utility>

#include <unistd.h>

namespace desktop {
namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

std::optional<std::string> sessionBusToAsk() {
  // "autolaunch:" would start a new bus, on which nobody is.
  if (auto address = variable("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
    if (address.find("autolaunch:") != std::string::npos) return std::nullopt;
    return address;
  }
  const std::string socket = variable("XDG_RUNTIME_DIR") + "/bus";
  if (!socket.starts_with('/') || socket == "/bus" || access(socket.c_str(), F_OK) != 0) return std::nullopt;
  char* const escaped = g_dbus_address_escape_value(socket.c_str());
  std::string address = std::string("unix:path=") + escaped;
  g_free(escaped);
  return address;
}

/// The context of the answer. `asker` may have been destroyed when it arrives.
struct PrivateBus::Attempt {
  PrivateBus* asker;
  OwnedObject<GCancellable> ended;
};

PrivateBus::PrivateBus(const std::string& address, std::function<void()> connected)
    : connected_(std::move(connected)), ended_(g_cancellable_new()) {
  constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  g_object_ref(ended_.get());
  g_dbus_connection_new_for_address(address.c_str(), flags, nullptr, ended_.get(), &PrivateBus::answered,
                                    new Attempt{this, OwnedObject<GCancellable>(ended_.get())});
}

PrivateBus::~PrivateBus() {
  g_cancellable_cancel(ended_.get());
  if (!connection_) return;
  for (const guint subscription : subscriptions_) {
    g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
  }
  g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
}

void PrivateBus::answered(GObject* /*source*/, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<Attempt> attempt(static_cast<Attempt*>(data));
  OwnedObject<GDBusConnection> connection(g_dbus_connection_new_for_address_finish(result, nullptr));
  if (!connection || g_cancellable_is_cancelled(attempt->ended.get()) != FALSE) return;
  attempt->asker->connection_ = std::move(connection);
  attempt->asker->connected_();
}

void PrivateBus::subscribe(const Signal& signal, GDBusSignalCallback heard, gpointer self) {
  subscriptions_.push_back(g_dbus_connection_signal_subscribe(connection_.get(), signal.sender, signal.interface,
                                                              signal.name, signal.path, signal.firstArgument,
                                                              G_DBUS_SIGNAL_FLAGS_NONE, heard, self, nullptr));
}

}  // namespace desktop
