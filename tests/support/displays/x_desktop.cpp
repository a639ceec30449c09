#include "support/displays/x_desktop.hpp"

#include <fstream>
#include <stdexcept>

#include <xcb/xcb.h>

#include "support/file_content.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

/// A window that a test shows for a moment.
class Probe {
 public:
  explicit Probe(const XConnection& connection) : connection_(connection), window_(xcb_generate_id(raw())) {
    xcb_create_window(raw(), XCB_COPY_FROM_PARENT, window_, connection.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  ~Probe() {
    xcb_destroy_window(raw(), window_);
    xcb_flush(raw());
  }
  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;

  /// Asks once more each time that nothing came of it.
  bool comesUp() const {
    xcb_map_window(raw(), window_);
    return eventually([this] { return connection_.isShown(window_); }, std::chrono::milliseconds(200));
  }

 private:
  xcb_connection_t* raw() const { return connection_.raw(); }

  const XConnection& connection_;
  XWindow window_;
};

/// None of them composes windows: picom does, where a test asks for it.
std::vector<std::string> commandOf(XDesktop::WindowManager manager) {
  switch (manager) {
    case XDesktop::WindowManager::metacity:
      return {"metacity", "--sm-disable", "--compositor=none"};
    case XDesktop::WindowManager::marco:
      return {"marco", "--sm-disable", "--no-composite"};
    case XDesktop::WindowManager::xfwm4:
      return {"xfwm4", "--compositor=off"};
    default:
      return {"openbox", "--sm-disable"};
  }
}

}  // namespace

XDesktop::XDesktop() : XDesktop(Settings{}) {}

XDesktop::XDesktop(const Settings& settings) : bus_(settings.services) {
  // The server finds a free display number and writes it where it was told to, its standard output.
  const bool fixed = settings.monitors == MonitorKind::fixed;
  server_.emplace(start(serverCommand(settings), fixed ? "xvfb" : "xserver-xorg-core xserver-xorg-video-dummy"));
  const auto number = server_->firstLine();
  if (number.empty()) throw std::runtime_error("the X server did not come up:\n" + log());
  display_ = ":" + number;
  windows_.emplace(display_);
  input_.emplace(*windows_);
  monitors_.emplace(*windows_, display_, bus_.path("display.log"));
  if (settings.windowManager != WindowManager::none) {
    const auto command = commandOf(settings.windowManager);
    windowManager_.emplace(start(command, command[0]));
    waitUntil(
        command[0] + " manages windows", [this] { return windows_->hasWindowManager() || windowManager_->hasEnded(); },
        [this] { return log(); });
    if (windowManager_->hasEnded()) throw std::runtime_error(command[0] + " ended:\n" + log());
    awaitWindowManager();
  }
  if (settings.compositing) startCompositing();
}

std::vector<std::string> XDesktop::serverCommand(const Settings& settings) const {
  const auto size = std::to_string(settings.width) + "x" + std::to_string(settings.height);
  if (settings.monitors == MonitorKind::fixed) {
    return {"Xvfb", "-displayfd", "1", "-screen", "0", size + "x24", "-dpi", "96", "-nolisten", "tcp", "-noreset"};
  }
  std::string modeline = "Modeline \"" + size + "\"";
  for (const auto& number : timingsOf(settings.width, settings.height)) modeline += " " + number;
  std::ofstream(bus_.path("xorg.conf"))
      << "Section \"ServerFlags\"\n Option \"AutoAddDevices\" \"false\"\n Option \"DontVTSwitch\" \"true\"\n"
         "EndSection\n"
         "Section \"Device\"\n Identifier \"device\"\n Driver \"dummy\"\n VideoRam 65536\nEndSection\n"
         "Section \"Monitor\"\n Identifier \"monitor\"\n HorizSync 1-1000\n VertRefresh 1-1000\n "
      << modeline
      << "\nEndSection\n"
         "Section \"Screen\"\n Identifier \"screen\"\n Device \"device\"\n Monitor \"monitor\"\n DefaultDepth 24\n"
         " SubSection \"Display\"\n Depth 24\n Virtual 4096 2304\n Modes \""
      << size << "\"\n EndSubSection\nEndSection\n";
  return {"Xorg", "-displayfd", "1",   "-config", bus_.path("xorg.conf"), "-logfile", bus_.path("xorg.log"), "-dpi",
          "96",   "-nolisten",  "tcp", "-noreset"};
}

/// It says that it is at work before it is, and may sit on what it is asked in between until it hears from somebody.
void XDesktop::awaitWindowManager() const {
  {
    const Probe probe(*windows_);
    waitUntil("the window manager shows a window", [&] { return probe.comesUp(); }, [this] { return log(); });
  }
  waitUntil("the window manager shows none", [this] { return windows_->stacking().empty(); }, [this] { return log(); });
}

void XDesktop::startCompositing() {
  compositor_.emplace(start({"picom", "--backend", "xrender", "--config", "/dev/null"}, "picom"));
  waitUntil(
      "picom composes the screen", [this] { return windows_->hasCompositor() || compositor_->hasEnded(); },
      [this] { return log(); });
  if (compositor_->hasEnded()) throw std::runtime_error("picom ended:\n" + log());
}

void XDesktop::endCompositing() {
  compositor_.reset();
  waitUntil("picom has gone", [this] { return !windows_->hasCompositor(); });
}

ChildProcess::Start XDesktop::start(std::vector<std::string> command, const std::string& package) const {
  return {.command = std::move(command),
          .environment = environmentLines(environment()),
          .input = {},
          .errorFile = bus_.path("display.log"),
          .package = package,
          .endSignal = SIGTERM};
}

SessionBus::Environment XDesktop::environment() const {
  auto variables = bus_.environment();
  if (!display_.empty()) variables["DISPLAY"] = display_;
  return variables;
}

std::string XDesktop::log() const { return contentOf(bus_.path("display.log")); }

}  // namespace support
