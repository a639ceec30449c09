// A desktop of a test's own in a desktop environment's real shell: GNOME Shell or KWin, on X11 or as a Wayland
// compositor whose output is a window that fills an X server. So every kind is looked at, clicked and typed into by X.
// Needs the packages of scripts/packages-shells.txt, and xvfb. All ends with the object.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "support/child_process.hpp"
#include "support/displays/geometry.hpp"
#include "support/displays/x_connection.hpp"
#include "support/displays/x_desktop.hpp"
#include "support/session_bus.hpp"

namespace support {

enum class Shell { gnomeOnX11, gnomeOnWayland, kwinOnX11, kwinOnWayland };

/// The program that a test of this shell starts.
std::string programOf(Shell shell);

/// Every function throws std::runtime_error with the shell's log where something does not work.
class ShellDesktop {
 public:
  /// Returns when the shell shows an empty desktop of 1280 x 800 and manages windows.
  explicit ShellDesktop(Shell shell);

  /// What a program on this desktop needs; its PATH is the test's. X clients can be shown on every kind.
  SessionBus::Environment environment() const;

  XInput& input() { return host_.input(); }
  Bitmap screenshot() const { return host_.screenshot(); }
  /// The screen without the shell's own bars.
  ScreenArea workArea() const;

  /// As the shell's shortcut does.
  void showDesktop(bool shown);

  std::string log() const;

 private:
  void startGnome();
  void startKwin();
  void start(std::vector<std::string> command, SessionBus::Environment variables);
  void awaitStart(const std::string& what, const std::function<bool()>& condition) const;
  bool leavesOverview() const;
  /// The X server on which X clients are: the shell's own where it is a Wayland compositor.
  const XConnection& clients() const { return xwayland_ ? *xwayland_ : host_.windows(); }

  Shell shell_;
  XDesktop host_{XDesktop::Settings{.windowManager = XDesktop::WindowManager::none}};
  // Neither shell starts without a system bus; nobody has to be on it.
  SessionBus system_;
  std::string authority_;
  std::string xwaylandDisplay_;
  std::optional<ChildProcess> process_;
  std::optional<XConnection> xwayland_;
  BusConnection asking_;
};

}  // namespace support
