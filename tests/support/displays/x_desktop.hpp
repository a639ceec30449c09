// A desktop of a test's own on a real X server: Xvfb, or Xorg with its dummy driver where monitors are to come and go,
// with openbox or another window manager and, where asked for, picom, which composes windows that are partly clear.
// Needs the packages xvfb or xserver-xorg-core and xserver-xorg-video-dummy, the window manager's, and picom. All ends
// with the object.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "support/child_process.hpp"
#include "support/displays/x_connection.hpp"
#include "support/displays/x_input.hpp"
#include "support/displays/x_monitors.hpp"
#include "support/session_bus.hpp"

namespace support {

class XDesktop {
 public:
  enum class MonitorKind {
    fixed,       // one, "screen"
    unpluggable  // "DUMMY0", and more by XMonitors
  };
  enum class WindowManager { none, openbox, metacity, marco, xfwm4 };
  struct Settings {
    int width = 1280;
    int height = 800;
    MonitorKind monitors = MonitorKind::fixed;
    WindowManager windowManager = WindowManager::openbox;
    bool compositing = false;
    std::map<std::string, std::string> services = {};  // see SessionBus
  };

  /// Returns when the window manager and the compositing manager are at work. Throws std::runtime_error with what they
  /// said.
  XDesktop();
  explicit XDesktop(const Settings& settings);

  /// What a program on this desktop needs, `DISPLAY` and the session's own; its PATH is the test's.
  SessionBus::Environment environment() const;

  SessionBus& bus() { return bus_; }
  const SessionBus& bus() const { return bus_; }
  const XConnection& windows() const { return *windows_; }
  XInput& input() { return *input_; }
  XMonitors& monitors() { return *monitors_; }
  Bitmap screenshot() const { return windows_->screenshot(); }

  void startCompositing();
  void endCompositing();

  /// As when the server crashes. Nothing that shows or asks for windows may be used any more.
  void endServer() { server_->kill(); }

  /// What the server and the managers said.
  std::string log() const;

 private:
  void awaitWindowManager() const;
  std::vector<std::string> serverCommand(const Settings& settings) const;
  ChildProcess::Start start(std::vector<std::string> command, const std::string& package) const;

  SessionBus bus_;
  std::string display_;
  std::optional<ChildProcess> server_;
  std::optional<XConnection> windows_;
  std::optional<XInput> input_;
  std::optional<XMonitors> monitors_;
  std::optional<ChildProcess> windowManager_;
  std::optional<ChildProcess> compositor_;
};

}  // namespace support
