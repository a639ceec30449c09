#include "desktop/program/shown_desktop.hpp"

#include <memory>
#include <utility>

namespace desktop {

/// The context of the answer. The asker may have ended when it arrives.
struct ShownDesktop::Attempt {
  ShownDesktop* asker;
  OwnedObject<GCancellable> ended;
};

ShownDesktop::ShownDesktop(const std::string& busAddress, std::function<void(bool)> changed)
    : changed_(std::move(changed)), ended_(g_cancellable_new()) {
  // A private connection: the one that GLib shares ends the process when the bus ends.
  constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  g_object_ref(ended_.get());
  g_dbus_connection_new_for_address(busAddress.c_str(), flags, nullptr, ended_.get(), &ShownDesktop::connected,
                                    new Attempt{this, OwnedObject<GCancellable>(ended_.get())});
}

ShownDesktop::~ShownDesktop() {
  g_cancellable_cancel(ended_.get());
  if (!bus_) return;
  g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  g_dbus_connection_close(bus_.get(), nullptr, nullptr, nullptr);
}

void ShownDesktop::connected(GObject* /*source*/, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<Attempt> attempt(static_cast<Attempt*>(data));
  OwnedObject<GDBusConnection> bus(g_dbus_connection_new_for_address_finish(result, nullptr));
  if (!bus || g_cancellable_is_cancelled(attempt->ended.get()) != FALSE) return;
  auto& self = *attempt->asker;
  self.bus_ = std::move(bus);
  constexpr const char* name = "org.kde.KWin";
  self.subscription_ =
      g_dbus_connection_signal_subscribe(self.bus_.get(), name, name, "showingDesktopChanged", "/KWin", nullptr,
                                         G_DBUS_SIGNAL_FLAGS_NONE, &ShownDesktop::told, &self, nullptr);
}

void ShownDesktop::told(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                        const char* /*interface*/, const char* /*signal*/, GVariant* parameters,
                        gpointer self) noexcept {
  if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)")) == FALSE) return;
  gboolean shown = FALSE;
  g_variant_get(parameters, "(b)", &shown);
  static_cast<ShownDesktop*>(self)->changed_(shown != FALSE);
}

}  // namespace desktop
