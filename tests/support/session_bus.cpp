#include "support/session_bus.hpp"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include <systemd/sd-bus.h>

namespace support {
namespace {

namespace fs = std::filesystem;

}  // namespace

void BusConnectionCloser::operator()(sd_bus* connection) const { sd_bus_close_unref(connection); }

void BusMessageReleaser::operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }

void check(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string(what) + ": " + std::strerror(-result));
}

SessionBus::SessionBus(const std::map<std::string, std::string>& services) {
  variables_ = {{"HOME", path("home")},
                {"XDG_RUNTIME_DIR", path("run")},
                {"XDG_DATA_HOME", path("home/.local/share")},
                {"NO_AT_BRIDGE", "1"}};
  for (const char* name : {"home", "run", "services"}) {
    fs::create_directory(path(name));
    fs::permissions(path(name), fs::perms::owner_all);
  }
  for (const auto& [name, command] : services) {
    folder_.write("services/" + name + ".service", "[D-BUS Service]\nName=" + name + "\nExec=" + command + "\n");
  }
  folder_.write("bus.conf", "<busconfig><type>session</type><listen>unix:path=" + path("run/bus") +
                                "</listen><auth>EXTERNAL</auth><servicedir>" + path("services") +
                                "</servicedir><policy context=\"default\"><allow send_destination=\"*\"/>"
                                "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
  daemon_.emplace(ChildProcess::Start{
      .command = {"dbus-daemon", "--nofork", "--print-address", "--config-file=" + path("bus.conf")},
      .environment = environmentLines(environment()),
      .input = {},
      // As root without capabilities it complains of its descriptor limit, each time.
      .errorFile = path("bus.log"),
      .package = "dbus"});
  address_ = daemon_->firstLine();
  if (address_.empty()) throw std::runtime_error("dbus-daemon gave no address");
}

BusConnection connectToBus(const std::string& address) {
  sd_bus* fresh = nullptr;
  check(sd_bus_new(&fresh), "sd_bus_new");
  BusConnection connection(fresh);
  check(sd_bus_set_address(fresh, address.c_str()), "the bus's address");
  check(sd_bus_set_bus_client(fresh, 1), "the bus");
  check(sd_bus_start(fresh), "connecting to the bus");
  return connection;
}

bool SessionBus::isOwned(const std::string& name) const {
  return sd_bus_get_name_creds(connect().get(), name.c_str(), 0, nullptr) >= 0;
}

SessionBus::Environment SessionBus::environment() const {
  auto variables = variables_;
  if (!address_.empty()) variables["DBUS_SESSION_BUS_ADDRESS"] = address_;
  return variables;
}

void SessionBus::setVariable(const std::string& name, std::optional<std::string> value) {
  if (value) {
    variables_[name] = *std::move(value);
  } else {
    variables_.erase(name);
  }
}

std::vector<std::string> environmentLines(const SessionBus::Environment& variables) {
  auto all = variables;
  const char* path = std::getenv("PATH");
  all.try_emplace("PATH", path == nullptr ? "/usr/bin:/bin" : path);
  for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) all.try_emplace(name, value);
  }
  std::vector<std::string> result;
  for (const auto& [name, value] : all) result.push_back(name + "=" + value);
  return result;
}

}  // namespace support
