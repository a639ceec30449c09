#include "support/displays/sway_desktop.hpp"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "support/file_content.hpp"
#include "support/tool.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::uint32_t runCommand = 0;
constexpr std::uint32_t getOutputs = 3;
constexpr std::uint32_t getTree = 4;

// Of the sway-ipc(7) socket: this, the payload's length, the kind, the payload.
constexpr std::string_view magic = "i3-ipc";

base::FileDescriptor connectTo(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  base::FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) socket.reset();
  return socket;
}

bool readAll(int socket, char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t got = read(socket, bytes, count);
    if (got <= 0) return false;
    bytes += got;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

std::string fileIn(const fs::path& folder, std::string_view prefix, std::string_view suffix) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    const auto name = entry.path().filename().native();
    if (name.starts_with(prefix) && name.ends_with(suffix) && entry.is_socket()) return entry.path().native();
  }
  return {};
}

ScreenArea areaFrom(const json& rect) { return {rect["x"], rect["y"], rect["width"], rect["height"]}; }

}  // namespace

SwayDesktop::SwayDesktop() : SwayDesktop(Settings{}) {}

SwayDesktop::SwayDesktop(const Settings& settings) : bus_(settings.services) {
  const bool unpluggable = settings.kind == OutputKind::unpluggable;
  const std::string prefix = unpluggable ? "X11-" : "HEADLESS-";
  const auto count = std::to_string(settings.outputs);
  if (unpluggable) {
    host_.emplace(XDesktop::Settings{.windowManager = XDesktop::WindowManager::none});
    // sway's library uses the names that it finds, and its windows close only by these.
    for (const char* name : {"WM_PROTOCOLS", "WM_DELETE_WINDOW", "_NET_WM_NAME", "UTF8_STRING"}) {
      host_->windows().atom(name);
    }
  }
  std::string configuration = "xwayland disable\ndefault_border none\nseat * fallback true\nseat * hide_cursor 100\n";
  for (int i = 0; i < settings.outputs; ++i) {
    configuration += "output " + prefix + std::to_string(i + 1) + " mode " + std::to_string(settings.width) + "x" +
                     std::to_string(settings.height) + " position " + std::to_string(i * settings.width) + " 0\n";
  }
  folder_.write("config", configuration);
  const auto runtime = folder_.path("run");
  fs::create_directory(runtime);
  fs::permissions(runtime, fs::perms::owner_all);

  ChildProcess::Start start{
      .command = {"sway", "-c", folder_.path("config")},
      .environment = environmentLines({{"XDG_RUNTIME_DIR", runtime},
                                       {"HOME", runtime},
                                       {"DISPLAY", unpluggable ? host_->environment().at("DISPLAY") : ""},
                                       {"WLR_BACKENDS", unpluggable ? "x11" : "headless"},
                                       {unpluggable ? "WLR_X11_OUTPUTS" : "WLR_HEADLESS_OUTPUTS", count},
                                       {"WLR_LIBINPUT_NO_DEVICES", "1"},
                                       {"WLR_RENDERER", "pixman"}}),
      .input = {},
      .errorFile = folder_.path("log"),
      .package = "sway",
      .endSignal = SIGTERM};
  if (geteuid() == 0) {
    const passwd* const nobody = getpwnam("nobody");
    if (nobody == nullptr || chown(runtime.c_str(), nobody->pw_uid, nobody->pw_gid) != 0) {
      throw std::runtime_error("sway cannot be run as nobody");
    }
    fs::permissions(folder_.path("."), fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
    fs::permissions(folder_.path("config"), fs::perms::others_read, fs::perm_options::add);
    start.command.insert(start.command.begin(), {"setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups",
                                                 "--pdeathsig", "KILL", "--"});
  }
  compositor_.emplace(start);
  const auto told = [this] { return log(); };
  const auto ended = [this] {
    if (compositor_->hasEnded()) throw std::runtime_error("sway ended:\n" + log());
    return false;
  };
  waitUntil(
      "sway listens",
      [&] {
        socket_ = fileIn(runtime, "sway-ipc.", ".sock");
        display_ = fileIn(runtime, "wayland-", "");
        return (!socket_.empty() && !display_.empty() && connectTo(socket_).get() >= 0) || ended();
      },
      told);
  input_.emplace(display_);
  const ScreenArea last{(settings.outputs - 1) * settings.width, 0, settings.width, settings.height};
  change(prefix + count, "enable", [&](const auto& output) { return (output && output->area == last) || ended(); });
}

json SwayDesktop::ask(std::uint32_t kind, const std::string& payload) {
  const auto socket = connectTo(socket_);
  const auto length = static_cast<std::uint32_t>(payload.size());
  std::string message(magic);
  message.append(reinterpret_cast<const char*>(&length), sizeof length);
  message.append(reinterpret_cast<const char*>(&kind), sizeof kind);
  message += payload;
  std::string head(magic.size() + 2 * sizeof(std::uint32_t), '\0');
  std::string answer;
  bool fine = write(socket.get(), message.data(), message.size()) == static_cast<ssize_t>(message.size()) &&
              readAll(socket.get(), head.data(), head.size());
  if (fine) {
    std::uint32_t answerLength = 0;
    std::memcpy(&answerLength, head.data() + magic.size(), sizeof answerLength);
    answer.resize(answerLength);
    fine = readAll(socket.get(), answer.data(), answer.size());
  }
  if (!fine) throw std::runtime_error("sway does not answer:\n" + log());
  return json::parse(answer);
}

void SwayDesktop::run(const std::string& command) {
  for (const auto& result : ask(runCommand, command)) {
    if (!result["success"].get<bool>()) throw std::runtime_error("sway cannot \"" + command + "\": " + result.dump());
  }
}

std::vector<SwayOutput> SwayDesktop::outputs() {
  std::vector<SwayOutput> result;
  for (const auto& each : ask(getOutputs, "")) {
    if (each["active"].get<bool>()) result.push_back({each["name"], areaFrom(each["rect"]), each["scale"]});
  }
  return result;
}

std::optional<SwayOutput> SwayDesktop::find(const std::string& name) {
  for (auto& each : outputs()) {
    if (each.name == name) return each;
  }
  return std::nullopt;
}

void SwayDesktop::layoutChanged() {
  ScreenArea layout;
  for (const auto& each : outputs()) {
    layout.width = std::max(layout.width, each.area.x + each.area.width);
    layout.height = std::max(layout.height, each.area.y + each.area.height);
  }
  input_->setLayout(layout);
}

// What a command asks of an output comes to be some time after its answer.
void SwayDesktop::change(const std::string& output, const std::string& command,
                         const std::function<bool(const std::optional<SwayOutput>&)>& done) {
  run("output " + output + " " + command);
  waitUntil(output + " follows: " + command, [&] { return done(find(output)); }, [this] { return log(); });
  layoutChanged();
}

std::string SwayDesktop::addOutput(int width, int height) {
  const auto before = outputs();
  int right = 0;
  for (const auto& each : before) right = std::max(right, each.area.x + each.area.width);
  run("create_output");
  std::string name;
  const auto isNew = [&](const SwayOutput& output) {
    return std::none_of(before.begin(), before.end(), [&](const auto& old) { return old.name == output.name; });
  };
  waitUntil("sway has a new output", [&] {
    for (const auto& each : outputs()) {
      if (isNew(each)) name = each.name;
    }
    return !name.empty();
  });
  const ScreenArea area{right, 0, width, height};
  change(name,
         "mode " + std::to_string(width) + "x" + std::to_string(height) + " position " + std::to_string(right) + " 0",
         [&](const auto& output) { return output && output->area == area; });
  return name;
}

void SwayDesktop::unplug(const std::string& output) {
  if (!host_) throw std::runtime_error("headless outputs cannot be unplugged");
  for (const auto window : host_->windows().topWindows()) {
    if (host_->windows().title(window) == "wlroots - " + output) host_->windows().close(window);
  }
  waitUntil(output + " has gone", [&] { return !find(output); }, [this] { return log(); });
  layoutChanged();
}

void SwayDesktop::setScale(const std::string& output, double scale) {
  change(output, "scale " + std::to_string(scale), [scale](const auto& now) { return now && now->scale == scale; });
}

std::vector<ScreenArea> SwayDesktop::windowsOf(pid_t process) {
  std::vector<ScreenArea> found;
  const std::function<void(const json&)> visit = [&](const json& node) {
    if (node.value("pid", 0) == process) found.push_back(areaFrom(node["rect"]));
    for (const auto* children : {"nodes", "floating_nodes"}) {
      if (!node.contains(children)) continue;
      for (const auto& child : node[children]) visit(child);
    }
  };
  visit(ask(getTree, ""));
  return found;
}

Bitmap SwayDesktop::screenshot(const std::string& output) const {
  const auto file = folder_.path("screenshot.png");
  fs::remove(file);
  std::vector<std::string> arguments{"WAYLAND_DISPLAY=" + display_, "XDG_RUNTIME_DIR=" + bus_.path("run"), "grim", "-l",
                                     "1"};
  if (!output.empty()) arguments.insert(arguments.end(), {"-o", output});
  arguments.push_back(file);
  runTool("env", "coreutils", arguments, folder_.path("log"));
  auto bitmap = readPng(contentOf(file));
  if (bitmap.pixels.empty()) throw std::runtime_error("grim (apt-get install grim) took no screenshot:\n" + log());
  return bitmap;
}

SessionBus::Environment SwayDesktop::environment() const {
  auto variables = bus_.environment();
  variables["WAYLAND_DISPLAY"] = display_;
  return variables;
}

std::string SwayDesktop::log() const { return contentOf(folder_.path("log")); }

}  // namespace support
