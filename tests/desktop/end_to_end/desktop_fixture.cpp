#include "desktop/end_to_end/desktop_fixture.hpp"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/file_content.hpp"

namespace end_to_end {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using support::contentOf;
using support::SessionBus;

std::vector<std::string> linesOf(const fs::path& file) {
  std::ifstream stream(file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void replace(const fs::path& file, const std::string& content) {
  std::ofstream(file.string() + ".new", std::ios::binary) << content;
  fs::rename(file.string() + ".new", file);
}

/// Tests click on boards. No click may start the browser or the Vamba of whoever runs them. What a test has put there
/// itself stays.
void keepApplicationsAway(const SessionBus::Environment& variables) {
  const auto write = [](const fs::path& file, const std::string& content) {
    if (fs::exists(file)) return;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
  };
  const fs::path applications = fs::path(variables.at("XDG_DATA_HOME")) / "applications";
  write(applications / "pl.ferol.vamba.desktop", "[Desktop Entry]\nType=Application\nHidden=true\n");
  write(applications / "browser.desktop", "[Desktop Entry]\nType=Application\nName=Browser\nExec=true %u\n");
  write(fs::path(variables.at("XDG_CONFIG_HOME")) / "mimeapps.list",
        "[Default Applications]\nx-scheme-handler/https=browser.desktop\n");
}

support::ChildProcess start(const SessionBus::Environment& display, const HostSettings& settings,
                            std::vector<std::string> arguments, const std::string& errors) {
  arguments.insert(arguments.begin(), {VAMBA_HOST, "--extension", settings.extension});
  if (settings.asService) {
    arguments.insert(arguments.begin(), {"/bin/sh", "-c",
                                         "export SYSTEMD_EXEC_PID=$$ JOURNAL_STREAM=$(stat -Lc %d:%i /proc/$$/fd/2); "
                                         "exec \"$@\"",
                                         "sh"});
  }
  auto variables = hostEnvironment(display);
  for (const auto& [name, value] : settings.variables) variables[name] = value;
  keepApplicationsAway(variables);
  for (const auto& name : settings.without) variables.erase(name);
  return support::ChildProcess({.command = std::move(arguments),
                                .environment = support::environmentLines(variables),
                                .input = {},
                                .errorFile = errors,
                                .endSignal = SIGTERM});
}

}  // namespace

ChangingExtension::ChangingExtension() {
  folder_.write("extension", "#!/bin/sh\n. " + folder_.path("variables") + "\nexec " VAMBA_FAKE_EXTENSION "\n");
  fs::permissions(program(), fs::perms::owner_all);
  set("FAKE_EXTENSION_STARTS", folder_.path("starts"));
  set("FAKE_EXTENSION_REQUESTS", folder_.path("requests"));
}

void ChangingExtension::set(const std::string& variable, const std::string& value) {
  variables_[variable] = value;
  std::string script;
  for (const auto& [name, text] : variables_) script.append("export ").append(name).append("='").append(text) += "'\n";
  replace(folder_.path("variables"), script);
}

std::vector<pid_t> ChangingExtension::processes() const {
  std::vector<pid_t> processes;
  for (const auto& line : linesOf(folder_.path("starts"))) processes.push_back(std::stoi(line));
  return processes;
}

std::size_t ChangingExtension::requests(const std::string& method) const {
  return static_cast<std::size_t>(std::ranges::count(linesOf(folder_.path("requests")), method));
}

DesktopHost::DesktopHost(const SessionBus::Environment& display, const HostSettings& settings)
    : process_(start(display, settings, settings.arguments, folder_.path("errors"))) {}

std::string DesktopHost::said() const { return contentOf(folder_.path("errors")); }

bool DesktopHost::says(const std::string& text, std::size_t times) const {
  return support::eventually([&] {
    const std::string said = this->said();
    std::size_t count = 0;
    for (auto at = said.find(text); at != std::string::npos; at = said.find(text, at + 1)) ++count;
    return count >= times;
  });
}

std::optional<int> DesktopHost::end() const {
  ::kill(id(), SIGTERM);
  return exitStatus();
}

double DesktopHost::memory() const {
  for (const auto& line : linesOf("/proc/" + std::to_string(id()) + "/smaps_rollup")) {
    constexpr double kilobytes = 1024;
    if (line.starts_with("Private_Dirty:")) return std::stod(line.substr(14)) / kilobytes;
  }
  throw std::runtime_error("the host has ended: " + said());
}

std::size_t DesktopHost::descriptors() const {
  const fs::directory_iterator open("/proc/" + std::to_string(id()) + "/fd");
  return static_cast<std::size_t>(std::distance(open, fs::directory_iterator()));
}

SessionBus::Environment hostEnvironment(SessionBus::Environment display) {
  display.try_emplace("XDG_CONFIG_HOME", display.at("HOME") + "/configuration");
  display.try_emplace("LANGUAGE", "pl");
  display.try_emplace("TZ", "Europe/Warsaw");
  return display;
}

fs::path placementsFile(const SessionBus::Environment& display) {
  return fs::path(hostEnvironment(display).at("XDG_CONFIG_HOME")) / "vamba" / "placements.json";
}

json placements(const SessionBus::Environment& display) {
  const std::string text = contentOf(placementsFile(display));
  return text.empty() ? json(nullptr) : json::parse(text);
}

json placedWidget(const SessionBus::Environment& display, std::size_t index) {
  const auto all = placements(display);
  return all.is_null() || all["widgets"].size() <= index ? json(nullptr) : all["widgets"].at(index);
}

json placed(int id, const std::string& family, const std::string& connector, const std::string& corner, int x, int y) {
  return {{"id", id},
          {"kind", "fake"},
          {"family", family},
          {"monitor", {{"make", ""}, {"model", ""}, {"serial", ""}, {"connector", connector}}},
          {"corner", corner},
          {"x", x},
          {"y", y}};
}

void place(const SessionBus::Environment& display, const json& widgets) {
  const auto file = placementsFile(display);
  fs::create_directories(file.parent_path());
  replace(file, json{{"format", "vamba-placements"}, {"version", 1}, {"widgets", widgets}}.dump());
}

support::Bitmap exportedPicture(const SessionBus::Environment& display, const HostSettings& settings,
                                std::vector<std::string> options) {
  const support::TemporaryFolder folder;
  options.insert(options.begin(), {"show", "--format", "png", "--output", folder.path("board.png")});
  const auto exporter = start(display, settings, std::move(options), folder.path("errors"));
  if (exporter.exitStatus() != 0) throw std::runtime_error("no picture: " + contentOf(folder.path("errors")));
  return support::readPng(contentOf(folder.path("board.png")));
}

support::Bitmap over(const support::Bitmap& background, const support::Bitmap& picture) {
  support::Bitmap result = background;
  const auto mixed = [](int below, int above, int opacity) {
    constexpr int full = 255;
    return static_cast<std::uint8_t>((above * opacity + below * (full - opacity) + full / 2) / full);
  };
  for (std::size_t i = 0; i < std::min(result.pixels.size(), picture.pixels.size()); ++i) {
    auto& below = result.pixels[i];
    const auto& above = picture.pixels[i];
    below = {mixed(below.red, above.red, above.opacity), mixed(below.green, above.green, above.opacity),
             mixed(below.blue, above.blue, above.opacity), 255};
  }
  return result;
}

}  // namespace end_to_end
