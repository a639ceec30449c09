#include "support/displays/mutter_desktop.hpp"

#include <filesystem>
#include <stdexcept>

#include "support/displays/mutter_x_server.hpp"
#include "support/file_content.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

namespace fs = std::filesystem;

constexpr const char* mutterWayland = "wayland-mutter";

}  // namespace

MutterDesktop::MutterDesktop() : MutterDesktop(Settings{}) {}

MutterDesktop::MutterDesktop(const Settings& settings) : bus_(settings.services) {
  auto variables = bus_.environment();
  variables["GSETTINGS_BACKEND"] = "memory";
  compositor_.emplace(
      ChildProcess::Start{.command = {"mutter", "--headless", "--wayland", "--virtual-monitor",
                                      std::to_string(settings.width) + "x" + std::to_string(settings.height),
                                      "--wayland-display", mutterWayland},
                          .environment = environmentLines(variables),
                          .input = {},
                          .errorFile = bus_.path("display.log"),
                          .package = "mutter",
                          .endSignal = SIGTERM});
  waitUntil(
      "mutter serves its clients",
      [this] {
        if (compositor_->hasEnded()) throw std::runtime_error("mutter ended:\n" + log());
        display_ = xDisplayOfMutter(log());
        authority_ = xAuthorityOfMutter(bus_.path("run"));
        return !display_.empty() && !authority_.empty() && fs::is_socket(bus_.path("run/") + mutterWayland) &&
               bus_.isOwned("org.gnome.Mutter.RemoteDesktop");
      },
      [this] { return log(); });
  windows_.emplace(display_, authority_);
  input_.emplace(bus_, *windows_);
  waitUntil("mutter manages windows", [this] { return windows_->hasWindowManager(); }, [this] { return log(); });
}

SessionBus::Environment MutterDesktop::environment() const {
  auto variables = bus_.environment();
  variables["WAYLAND_DISPLAY"] = mutterWayland;
  variables["DISPLAY"] = display_;
  variables["XAUTHORITY"] = authority_;
  return variables;
}

std::string MutterDesktop::log() const { return contentOf(bus_.path("display.log")); }

}  // namespace support
