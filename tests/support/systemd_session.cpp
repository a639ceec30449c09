#include "support/systemd_session.hpp"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "support/file_content.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

namespace fs = std::filesystem;

constexpr const char* systemdProgram = "/lib/systemd/systemd";
constexpr const char* sessionTarget = "test-session.target";

/// Where /proc/self/cgroup says that this process is, in the hierarchies that systemd keeps processes apart by.
std::vector<fs::path> ownGroups() {
  const fs::path mounted = "/sys/fs/cgroup";
  const bool one = fs::exists(mounted / "cgroup.procs");
  std::vector<fs::path> groups;
  std::ifstream lines("/proc/self/cgroup");
  for (std::string line; std::getline(lines, line);) {
    const auto path = line.substr(line.find(':', line.find(':') + 1) + 2);
    if (line.starts_with("0::")) groups.push_back((one ? mounted : mounted / "unified") / path);
    if (line.find(":name=systemd:") != std::string::npos) groups.push_back(mounted / "systemd" / path);
  }
  std::erase_if(groups, [](const fs::path& group) { return !fs::exists(group / "cgroup.procs"); });
  return groups;
}

/// The groups below one, itself last.
std::vector<fs::path> treeOf(const fs::path& group) {
  std::vector<fs::path> tree{group};
  std::error_code gone;
  for (const auto& entry : fs::recursive_directory_iterator(group, gone)) {
    if (entry.is_directory(gone)) tree.push_back(entry.path());
  }
  std::ranges::reverse(tree);
  return tree;
}

bool endedAll(const fs::path& group) {
  bool ended = true;
  for (const auto& each : treeOf(group)) {
    std::ifstream processes(each / "cgroup.procs");
    for (pid_t process = 0; processes >> process;) {
      ::kill(process, SIGKILL);
      ended = false;
    }
  }
  return ended;
}

/// systemd runs for a user only where another one runs the system, which a file says. The words are a shell's.
std::string asIfBooted(const std::string& words) {
  constexpr const char* sign = "/run/systemd/system";
  if (fs::exists(sign)) return words;
  return "exec unshare --mount sh -c 'mount -t tmpfs none /run && mkdir -p " + std::string(sign) + " && " + words + "'";
}

}  // namespace

ControlGroups::ControlGroups() {
  for (const auto& own : ownGroups()) {
    const auto folder = own / ("vamba-test-" + std::to_string(getpid()));
    std::error_code error;
    fs::create_directory(folder, error);
    if (error) {
      for (const auto& made : folders_) rmdir(made.c_str());
      throw std::runtime_error("no control group may be made: " + folder.string() + ": " + error.message());
    }
    folders_.push_back(folder);
  }
  if (folders_.empty()) throw std::runtime_error("no control group is mounted below /sys/fs/cgroup");
}

ControlGroups::~ControlGroups() {
  for (const auto& folder : folders_) {
    eventually([&] { return endedAll(folder); });
    // The last one leaves a moment after it has been seen.
    eventually([&] {
      for (const auto& each : treeOf(folder)) rmdir(each.c_str());
      return !fs::exists(folder);
    });
  }
}

std::optional<std::string> SystemdSession::hindrance() {
  try {
    const ControlGroups groups;
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  const ChildProcess trial({.command = {"sh", "-c", asIfBooted("exec true")},
                            .environment = environmentLines({}),
                            .input = {},
                            .errorFile = "/dev/null"});
  if (trial.exitStatus() != 0) return "systemd does not run this machine, and no mount may hide that";
  return std::nullopt;
}

SystemdSession::SystemdSession(const SessionBus& bus, SessionBus::Environment environment)
    : bus_(bus), environment_(std::move(environment)) {
  if (!fs::exists(systemdProgram)) throw std::runtime_error("this test needs systemd: apt-get install systemd");
  // Nothing of what else this machine has installed.
  fs::create_directory(units());
  for (const auto& entry : fs::directory_iterator("/usr/lib/systemd/user")) {
    if (entry.path().extension() == ".target") fs::copy_file(entry.path(), units() / entry.path().filename());
  }
  fs::copy_file("/usr/lib/systemd/user/systemd-exit.service", units() / "systemd-exit.service");
  // systemd.special(7): the graphical session comes with a target of the desktop's own.
  std::ofstream(units() / sessionTarget) << "[Unit]\nBindsTo=graphical-session.target\n";
  environment_["SYSTEMD_UNIT_PATH"] = environment_.at("XDG_CONFIG_HOME") + "/systemd/user:" + units().string();

  std::string script;
  for (const auto& group : groups_.folders()) script += "echo $$ >" + group.string() + "/cgroup.procs && ";
  auto variables = environment_;
  variables["SYSTEMD_LOG_TARGET"] = "null";  // else the machine's console
  manager_.emplace(ChildProcess::Start{
      .command = {"sh", "-c", script + asIfBooted("exec " + std::string(systemdProgram) + " --user")},
      .environment = environmentLines(variables),
      .input = {},
      .errorFile = bus_.path("systemd.log"),
      .endSignal = SIGTERM});
  waitUntil(
      "systemd takes orders",
      [&] { return manager_->hasEnded() || systemctl({"is-active", "default.target"}).line == "active"; },
      [&] { return contentOf(bus_.path("systemd.log")); });
  if (manager_->hasEnded()) throw std::runtime_error("systemd ended");
}

SystemdSession::Outcome SystemdSession::run(const std::vector<std::string>& command,
                                            SessionBus::Environment more) const {
  more.insert(environment_.begin(), environment_.end());
  ChildProcess process({.command = command,
                        .environment = environmentLines(more),
                        .input = {},
                        .errorFile = bus_.path("systemd.log"),
                        .package = "systemd"});
  Outcome outcome{.status = -1, .line = process.firstLine()};
  outcome.status = process.exitStatus().value_or(-1);
  return outcome;
}

SystemdSession::Outcome SystemdSession::systemctl(std::vector<std::string> words) const {
  words.insert(words.begin(), {"systemctl", "--user", "--no-pager"});
  return run(words);
}

std::string SystemdSession::property(const std::string& unit, const std::string& name) const {
  return systemctl({"show", "--property=" + name, "--value", unit}).line;
}

void SystemdSession::beginGraphical(const SessionBus::Environment& variables) {
  std::vector<std::string> import{"systemctl", "--user", "import-environment"};
  for (const auto& [name, value] : variables) import.push_back(name);
  if (run(import, variables).status != 0) throw std::runtime_error("systemd takes no variables");
  if (systemctl({"start", sessionTarget}).status != 0) throw std::runtime_error("no graphical session begins");
}

void SystemdSession::endGraphical() {
  if (systemctl({"stop", "graphical-session.target"}).status != 0) throw std::runtime_error("it does not end");
}

}  // namespace support
