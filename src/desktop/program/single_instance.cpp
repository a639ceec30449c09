#include "desktop/program/single_instance.hpp"

#include "desktop/appearance/appearance_portal.hpp"

namespace desktop {

SingleInstance::SingleInstance(std::function<void()> calledAgain) : calledAgain_(std::move(calledAgain)) {
  if (!sessionBusToAsk()) return;
  application_.reset(g_application_new("pl.ferol.vamba.Desktop", G_APPLICATION_DEFAULT_FLAGS));
  connect<&SingleInstance::activated>(application_.get(), "activate", this);
}

bool SingleInstance::claim() {
  // A bus that can't be reached is treated like none.
  if (!application_ || g_application_register(application_.get(), nullptr, nullptr) == FALSE) return true;
  GDBusConnection* const bus = g_application_get_dbus_connection(application_.get());
  // By default, the process would end when the bus does.
  if (bus != nullptr) g_dbus_connection_set_exit_on_close(bus, FALSE);
  if (g_application_get_is_remote(application_.get()) == FALSE) return true;
  g_application_activate(application_.get());
  g_dbus_connection_flush_sync(bus, nullptr, nullptr);
  return false;
}

void SingleInstance::activated() { calledAgain_(); }

}  // namespace desktop
