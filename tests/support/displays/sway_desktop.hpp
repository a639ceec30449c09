// A desktop of a test's own on a real wlroots compositor, which has layer shell: sway with headless outputs. It refuses
// to run as root and is then run as nobody, alone; programs under test run as the test does. Needs the packages sway,
// grim, xkb-data and, for outputs that can be unplugged, xvfb. All ends with the object.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "support/bitmap.hpp"
#include "support/child_process.hpp"
#include "support/displays/geometry.hpp"
#include "support/displays/wayland_input.hpp"
#include "support/displays/x_desktop.hpp"
#include "support/session_bus.hpp"
#include "support/temporary_folder.hpp"

namespace support {

struct SwayOutput {
  std::string name;  // "HEADLESS-1"
  ScreenArea area;   // in the layout of all outputs, in its units
  double scale = 1;
  bool operator==(const SwayOutput&) const = default;
};

/// Every function throws std::runtime_error with the compositor's log where something does not work.
class SwayDesktop {
 public:
  enum class OutputKind {
    headless,    // named HEADLESS-1 and so on
    unpluggable  // named X11-1 and so on: windows of an X server without a screen, which can be taken away
  };
  struct Settings {
    int width = 1280;
    int height = 800;
    int outputs = 1;  // side by side
    OutputKind kind = OutputKind::headless;
    std::map<std::string, std::string> services = {};  // see SessionBus
  };

  /// Returns when the outputs are there. The background is grey. The cursor hides a tenth of a second
  /// after its last move.
  SwayDesktop();
  explicit SwayDesktop(const Settings& settings);

  /// What a program on this desktop needs, `WAYLAND_DISPLAY` and the session's own; its PATH is the test's.
  SessionBus::Environment environment() const;

  SessionBus& bus() { return bus_; }
  WaylandInput& input() { return *input_; }

  /// The outputs that are on.
  std::vector<SwayOutput> outputs();
  /// A further one right of the others; its name.
  std::string addOutput(int width, int height);
  /// Takes an unpluggable output away, for good: one that is added later has the same make and model and a new name.
  void unplug(const std::string& output);
  void setScale(const std::string& output, double scale);

  /// Any command of sway(5).
  void run(const std::string& command);
  /// Where the windows of a process are; surfaces of the layer shell are not among them.
  std::vector<ScreenArea> windowsOf(pid_t process);

  /// In the output's own pixels; of all outputs in the largest scale without a name.
  Bitmap screenshot(const std::string& output = {}) const;

  /// As when the compositor crashes. Nothing that shows or asks for windows may be used any more.
  void endCompositor() { compositor_->kill(); }

  std::string log() const;

 private:
  nlohmann::json ask(std::uint32_t kind, const std::string& payload);
  void layoutChanged();
  std::optional<SwayOutput> find(const std::string& name);
  void change(const std::string& output, const std::string& command,
              const std::function<bool(const std::optional<SwayOutput>&)>& done);

  SessionBus bus_;
  TemporaryFolder folder_;
  std::optional<XDesktop> host_;  // of unpluggable outputs
  std::string socket_;
  std::string display_;
  std::optional<ChildProcess> compositor_;
  std::optional<WaylandInput> input_;
};

}  // namespace support
