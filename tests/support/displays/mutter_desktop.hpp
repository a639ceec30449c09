// A desktop of a test's own on a real Wayland compositor without layer shell: mutter with a virtual monitor, whose
// Xwayland serves X clients. What it composes cannot be seen; X clients' windows can. Needs the packages mutter and
// xwayland. All ends with the object.
#pragma once

#include <optional>
#include <string>

#include "support/child_process.hpp"
#include "support/displays/mutter_input.hpp"
#include "support/displays/x_connection.hpp"
#include "support/session_bus.hpp"

namespace support {

class MutterDesktop {
 public:
  struct Settings {
    int width = 1280;
    int height = 800;
    std::map<std::string, std::string> services = {};  // see SessionBus
  };

  /// Returns when both kinds of client are served. Throws std::runtime_error with what mutter said.
  MutterDesktop();
  explicit MutterDesktop(const Settings& settings);

  /// What a program on this desktop needs: `WAYLAND_DISPLAY`, `DISPLAY`, `XAUTHORITY` and the session's own; its PATH
  /// is the test's.
  SessionBus::Environment environment() const;

  SessionBus& bus() { return bus_; }
  /// Of X clients alone; use `pictureOf` for pixels.
  const XConnection& windows() const { return *windows_; }
  MutterInput& input() { return *input_; }

  std::string log() const;

 private:
  SessionBus bus_;
  std::string display_;
  std::string authority_;
  std::optional<ChildProcess> compositor_;
  std::optional<XConnection> windows_;
  std::optional<MutterInput> input_;
};

}  // namespace support
