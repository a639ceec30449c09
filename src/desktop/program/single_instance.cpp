#include "desktop/program/single_instance.hpp"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace desktop {
namespace {

/// Asked for without one, the bus library may start a bus that nobody else is on.
bool sessionHasBus() {
  const char* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address != nullptr && *address != '\0') return true;
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  std::error_code error;
  return runtime != nullptr && std::filesystem::is_socket(std::string(runtime) + "/bus", error);
}

}  // namespace

SingleInstance::SingleInstance(std::function<void()> calledAgain) : calledAgain_(std::move(calledAgain)) {
  if (!sessionHasBus()) return;
  application_.reset(g_application_new("pl.ferol.vamba.Desktop", G_APPLICATION_DEFAULT_FLAGS));
  connect<&SingleInstance::activated>(application_.get(), "activate", this);
  // A bus that can't be reached is as good as none.
  if (g_application_register(application_.get(), nullptr, nullptr) == FALSE) return;
  if (g_application_get_is_remote(application_.get()) == FALSE) return;
  first_ = false;
  g_application_activate(application_.get());
  g_dbus_connection_flush_sync(g_application_get_dbus_connection(application_.get()), nullptr, nullptr);
}

void SingleInstance::activated() { calledAgain_(); }

}  // namespace desktop
