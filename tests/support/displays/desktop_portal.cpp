#include "support/displays/desktop_portal.hpp"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <systemd/sd-bus.h>

namespace support {
namespace {

namespace fs = std::filesystem;

std::string programOf(const std::string& path, const std::string& package) {
  if (!fs::exists(path)) throw std::runtime_error("this test needs " + path + ": apt-get install " + package);
  return path;
}

/// Whom the bus starts from now on finds these in its environment, as a session tells its bus.
void handOn(const SessionBus& bus, const SessionBus::Environment& environment) {
  const auto connection = bus.connect();
  sd_bus_message* call = nullptr;
  check(sd_bus_message_new_method_call(connection.get(), &call, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", "UpdateActivationEnvironment"),
        "the bus's environment");
  int result = sd_bus_message_open_container(call, 'a', "{ss}");
  for (const auto& [name, value] : environment) {
    if (result >= 0) result = sd_bus_message_append(call, "{ss}", name.c_str(), value.c_str());
  }
  if (result >= 0) result = sd_bus_message_close_container(call);
  if (result >= 0) result = sd_bus_call(connection.get(), call, 0, nullptr, nullptr);
  sd_bus_message_unref(call);
  check(result, "the bus's environment");
}

}  // namespace

// Neither documents nor secrets: their portals want file systems and keyrings that no setting is kept in.
std::map<std::string, std::string> DesktopPortal::services() {
  return {{"org.freedesktop.portal.Desktop", programOf("/usr/libexec/xdg-desktop-portal", "xdg-desktop-portal")},
          {"org.freedesktop.impl.portal.desktop.gtk",
           programOf("/usr/libexec/xdg-desktop-portal-gtk", "xdg-desktop-portal-gtk")}};
}

DesktopPortal::DesktopPortal(const SessionBus& bus, SessionBus::Environment display)
    : bus_(bus), environment_(std::move(display)) {
  programOf("/usr/share/glib-2.0/schemas/org.gnome.desktop.interface.gschema.xml", "gsettings-desktop-schemas");
  const fs::path portals = bus.path("portals");
  fs::create_directory(portals);
  std::ofstream(portals / "gtk.portal") << "[portal]\nDBusName=org.freedesktop.impl.portal.desktop.gtk\n"
                                           "Interfaces=org.freedesktop.impl.portal.Settings;\nUseIn=gnome\n";
  environment_["XDG_DESKTOP_PORTAL_DIR"] = portals;
  environment_["XDG_CURRENT_DESKTOP"] = "GNOME";
  environment_["XDG_CONFIG_HOME"] = environment_.at("HOME") + "/settings";
  environment_["GSETTINGS_BACKEND"] = "keyfile";
  handOn(bus, environment_);
}

void DesktopPortal::set(const std::string& key, const std::string& value) const {
  const ChildProcess settings({.command = {"gsettings", "set", "org.gnome.desktop.interface", key, value},
                               .environment = environmentLines(environment_),
                               .input = {},
                               .errorFile = bus_.path("display.log"),
                               .package = "libglib2.0-bin"});
  if (settings.exitStatus() != 0) throw std::runtime_error("gsettings does not set " + key);
}

}  // namespace support
