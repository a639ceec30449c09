// The desktop's portal as Debian has it, xdg-desktop-portal with its GTK backend, on a test's bus. Its settings are
// those of the test's own home. Needs the packages xdg-desktop-portal, xdg-desktop-portal-gtk, libglib2.0-bin and
// gsettings-desktop-schemas.
#pragma once

#include <map>
#include <string>

#include "support/session_bus.hpp"

namespace support {

class DesktopPortal {
 public:
  /// By which a bus starts the portal once somebody asks it: for SessionBus. Throws std::runtime_error that names the
  /// package of what is not installed.
  static std::map<std::string, std::string> services();

  /// Prepares the bus, on which nobody has asked the portal yet; `display` is the environment of the bus's display.
  DesktopPortal(const SessionBus& bus, SessionBus::Environment display);

  /// A setting of org.gnome.desktop.interface, as settings programs change it. Throws std::runtime_error.
  void set(const std::string& key, const std::string& value) const;

  /// Whether somebody has asked it, so that it runs.
  bool runs() const { return bus_.isOwned("org.freedesktop.portal.Desktop"); }

 private:
  const SessionBus& bus_;
  SessionBus::Environment environment_;
};

}  // namespace support
