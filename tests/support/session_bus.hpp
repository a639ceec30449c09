// A session of a test's own: a home, a runtime folder and a message bus that nobody else is on, with whom a test puts
// there. It ends with the object. Needs the package dbus.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/child_process.hpp"
#include "support/temporary_folder.hpp"

struct sd_bus;
struct sd_bus_message;

namespace support {

struct BusConnectionCloser {
  void operator()(sd_bus* connection) const;
};
using BusConnection = std::unique_ptr<sd_bus, BusConnectionCloser>;

struct BusMessageReleaser {
  void operator()(sd_bus_message* message) const;
};
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageReleaser>;

/// Throws std::runtime_error where `result` is an error of sd-bus; `what` is what was tried.
void check(int result, const char* what);

/// Throws std::runtime_error.
BusConnection connectToBus(const std::string& address);

class SessionBus {
 public:
  using Environment = std::map<std::string, std::string>;

  /// `services` are the command lines by which the bus starts the owners of names. Throws std::runtime_error where the
  /// bus does not come up.
  explicit SessionBus(const std::map<std::string, std::string>& services = {});

  const std::string& address() const { return address_; }
  /// Throws std::runtime_error.
  BusConnection connect() const { return connectToBus(address_); }

  /// Whether somebody owns the name now.
  bool isOwned(const std::string& name) const;

  /// As when the bus crashes: whoever was on it is cut off, and nobody comes on it any more.
  void end() { daemon_->kill(); }

  /// A path in the session's own folder, which holds `home` and `run`.
  std::string path(const std::string& name) const { return folder_.path(name); }

  /// What a program that is to live in this session needs: `DBUS_SESSION_BUS_ADDRESS`, `HOME`, `XDG_RUNTIME_DIR`,
  /// `XDG_DATA_HOME`, and `NO_AT_BRIDGE`, for nobody serves accessibility until AccessibleObjects does.
  Environment environment() const;
  /// For who starts from now on; no value takes the variable away.
  void setVariable(const std::string& name, std::optional<std::string> value);

 private:
  TemporaryFolder folder_;
  std::string address_;
  Environment variables_;
  std::optional<ChildProcess> daemon_;
};

/// "NAME=value" for each, with the test's own PATH and its sanitizers' options beside them.
std::vector<std::string> environmentLines(const SessionBus::Environment& variables);

}  // namespace support
