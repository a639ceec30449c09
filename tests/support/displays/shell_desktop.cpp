#include "support/displays/shell_desktop.hpp"

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <systemd/sd-bus.h>

#include "support/displays/mutter_x_server.hpp"
#include "support/file_content.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

namespace fs = std::filesystem;

constexpr const char* shellWayland = "wayland-shell";

/// No animation, banner, picture or welcome, so that the screen is still once it shows what it is to show.
constexpr const char* gnomeSettings = R"([org/gnome/desktop/interface]
enable-animations=false
[org/gnome/desktop/notifications]
show-banners=false
[org/gnome/desktop/background]
picture-options='none'
primary-color='#2060a0'
color-shading-type='solid'
[org/gnome/shell]
welcome-dialog-last-shown-version='99'
)";

void write(const fs::path& file, const std::string& content) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
}

}  // namespace

std::string programOf(Shell shell) {
  switch (shell) {
    case Shell::kwinOnX11:
      return "kwin_x11";
    case Shell::kwinOnWayland:
      return "kwin_wayland";
    default:
      return "gnome-shell";
  }
}

ShellDesktop::ShellDesktop(Shell shell) : shell_(shell) {
  if (shell_ == Shell::gnomeOnX11 || shell_ == Shell::gnomeOnWayland) {
    startGnome();
  } else {
    startKwin();
  }
}

void ShellDesktop::startGnome() {
  const auto& bus = host_.bus();
  write(bus.path("home/.config/glib-2.0/settings/keyfile"), gnomeSettings);
  auto variables = host_.environment();
  variables["XDG_CURRENT_DESKTOP"] = "GNOME";
  variables["GSETTINGS_BACKEND"] = "keyfile";
  const bool wayland = shell_ == Shell::gnomeOnWayland;
  if (wayland) {
    variables["MUTTER_DEBUG_DUMMY_MODE_SPECS"] = "1280x800";
    start({"gnome-shell", "--wayland", "--nested", "--wayland-display", shellWayland}, variables);
  } else {
    start({"gnome-shell", "--x11", "--sm-disable"}, variables);
  }
  awaitStart("GNOME Shell has started", [this] { return log().find("GNOME Shell started") != std::string::npos; });
  if (wayland) {
    awaitStart("GNOME Shell serves X clients", [&] {
      xwaylandDisplay_ = xDisplayOfMutter(log());
      authority_ = xAuthorityOfMutter(bus.path("run"));
      return !xwaylandDisplay_.empty() && !authority_.empty();
    });
    xwayland_.emplace(xwaylandDisplay_, authority_);
  }
  awaitStart("GNOME Shell manages windows", [this] { return clients().hasWindowManager(); });
  awaitStart("GNOME Shell leaves the overview", [this] { return leavesOverview(); });
}

void ShellDesktop::startKwin() {
  auto variables = host_.environment();
  if (shell_ == Shell::kwinOnX11) {
    start({"kwin_x11"}, variables);
    awaitStart("KWin manages windows", [this] { return host_.windows().hasWindowManager(); });
    return;
  }
  // The installed file has a capability that a container may refuse; its copy has none.
  const auto program = host_.bus().path("kwin_wayland");
  fs::copy_file("/usr/bin/kwin_wayland", program);
  // KWin starts this once both kinds of client are served.
  const auto told = host_.bus().path("told-display");
  const auto teller = host_.bus().path("tell-display");
  write(teller, "#!/bin/sh\necho \"$DISPLAY\" >" + told + ".new && mv " + told + ".new " + told + "\n");
  fs::permissions(teller, fs::perms::owner_all);
  variables["KWIN_COMPOSE"] = "Q";
  start({program, "--x11-display", variables.at("DISPLAY"), "--width", "1280", "--height", "800", "--socket",
         shellWayland, "--no-lockscreen", "--xwayland", teller},
        variables);
  awaitStart("KWin serves its clients", [&] { return fs::exists(told) && host_.bus().isOwned("org.kde.KWin"); });
  std::ifstream stream(told);
  std::getline(stream, xwaylandDisplay_);
  xwayland_.emplace(xwaylandDisplay_);
}

void ShellDesktop::start(std::vector<std::string> command, SessionBus::Environment variables) {
  variables["DBUS_SYSTEM_BUS_ADDRESS"] = system_.address();
  process_.emplace(ChildProcess::Start{.command = std::move(command),
                                       .environment = environmentLines(variables),
                                       .input = {},
                                       .errorFile = host_.bus().path("shell.log"),
                                       .package = programOf(shell_)});
}

void ShellDesktop::awaitStart(const std::string& what, const std::function<bool()>& condition) const {
  // Minutes on a busy machine, where the screen is drawn without a graphics card.
  constexpr std::chrono::minutes patience{3};
  const bool done = eventually(
      [&] {
        if (process_->hasEnded()) throw std::runtime_error("the shell ended:\n" + log());
        return condition();
      },
      patience);
  if (!done) throw std::runtime_error("waited in vain until " + what + ":\n" + log());
}

/// It starts in the overview, and ignores the request until that has been shown.
bool ShellDesktop::leavesOverview() const {
  constexpr const char* name = "org.gnome.Shell";
  constexpr const char* path = "/org/gnome/Shell";
  constexpr const char* property = "OverviewActive";
  const auto bus = host_.bus().connect();
  int active = 1;
  sd_bus_set_property(bus.get(), name, path, name, property, nullptr, "b", 0);
  return sd_bus_get_property_trivial(bus.get(), name, path, name, property, nullptr, 'b', &active) >= 0 && active == 0;
}

ScreenArea ShellDesktop::workArea() const {
  // KWin has no bar, Plasma has.
  if (shell_ == Shell::kwinOnX11 || shell_ == Shell::kwinOnWayland) return {0, 0, 1280, 800};
  const auto numbers = clients().numbers(clients().root(), "_NET_WORKAREA");
  if (numbers.size() < 4) throw std::runtime_error("the shell tells no work area:\n" + log());
  return {static_cast<int>(numbers[0]), static_cast<int>(numbers[1]), static_cast<int>(numbers[2]),
          static_cast<int>(numbers[3])};
}

void ShellDesktop::showDesktop(bool shown) {
  if (shell_ != Shell::kwinOnWayland) return clients().showDesktop(shown);
  // KWin shows the windows again when the one who asked leaves the bus.
  if (!asking_) asking_ = host_.bus().connect();
  if (sd_bus_call_method(asking_.get(), "org.kde.KWin", "/KWin", "org.kde.KWin", "showDesktop", nullptr, nullptr, "b",
                         static_cast<int>(shown)) < 0) {
    throw std::runtime_error("KWin does not show the desktop:\n" + log());
  }
}

SessionBus::Environment ShellDesktop::environment() const {
  auto variables = host_.environment();
  if (shell_ == Shell::gnomeOnWayland || shell_ == Shell::kwinOnWayland) {
    variables["WAYLAND_DISPLAY"] = shellWayland;
    variables["DISPLAY"] = xwaylandDisplay_;
    if (!authority_.empty()) variables["XAUTHORITY"] = authority_;
  }
  return variables;
}

std::string ShellDesktop::log() const { return contentOf(host_.bus().path("shell.log")); }

}  // namespace support
