// A client of an X server that looks at what is there: windows with their places, order, properties and pictures. It
// makes no windows. XInput moves the mouse and strikes keys, x_monitors.hpp plugs monitors.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "support/bitmap.hpp"
#include "support/displays/geometry.hpp"

struct xcb_connection_t;

namespace support {

/// For what a library of X gives away to be freed.
struct XFreer {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Memory>
using XOwned = std::unique_ptr<Memory, XFreer>;

using XWindow = std::uint32_t;
using XAtom = std::uint32_t;

/// Functions throw std::runtime_error where the server does not answer; what is gone or not set is empty.
class XConnection {
 public:
  /// `authorityFile` holds the cookie of a server that wants one.
  explicit XConnection(const std::string& display, const std::string& authorityFile = {});

  XWindow root() const { return root_; }

  /// The managed windows as the window manager lists them, the lowest first.
  std::vector<XWindow> stacking() const;
  /// Windows on the screen whose _NET_WM_PID is the process, menus and tooltips included, the lowest first.
  std::vector<XWindow> windowsOf(pid_t process) const;

  /// The root window's own children, the lowest first: frames of managed windows, and windows that nobody manages.
  std::vector<XWindow> topWindows() const;
  /// Asks the client to close its window, as a window manager's close button does.
  void close(XWindow window) const;

  /// Asks the window manager to move another client's window, as tools do.
  void move(XWindow window, int x, int y) const;

  /// Asks the window manager to show the desktop, or the windows again.
  void showDesktop(bool shown) const;

  bool isShown(XWindow window) const;
  /// On the root window, without the frame.
  std::optional<ScreenArea> areaOf(XWindow window) const;

  std::string title(XWindow window) const;
  std::string text(XWindow window, const std::string& property) const;
  std::vector<std::uint32_t> numbers(XWindow window, const std::string& property) const;
  /// The names in a property like _NET_WM_STATE or _NET_WM_WINDOW_TYPE.
  std::vector<std::string> atoms(XWindow window, const std::string& property) const;
  /// Whether some window manager says it is at work.
  bool hasWindowManager() const;
  /// Whether someone composes the screen.
  bool hasCompositor() const;

  /// Where the server knows the pointer to be; an Xwayland knows it only over windows of X clients.
  ScreenPoint pointer() const;

  /// What the screen shows. Pixels are opaque.
  Bitmap screenshot() const { return pictureOf(root_); }
  /// A window's own pixels with their opacity, if it has such.
  Bitmap pictureOf(XWindow window) const;

  XAtom atom(const std::string& name) const;
  std::string nameOf(XAtom atom) const;
  xcb_connection_t* raw() const { return connection_.get(); }

 private:
  struct Closer {
    void operator()(xcb_connection_t* connection) const;
  };

  std::string bytes(XWindow window, const std::string& property) const;

  std::unique_ptr<xcb_connection_t, Closer> connection_;
  XWindow root_ = 0;
};

}  // namespace support
