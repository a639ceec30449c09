// A user's systemd as a login starts it, with units of a test's own home alone: what starts programs with a graphical
// session. Needs the package systemd, and control groups of its own, which containers seldom grant.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/child_process.hpp"
#include "support/session_bus.hpp"

namespace support {

/// A control group below the test's own in each hierarchy that systemd looks at. Whatever runs in it ends with the
/// object.
class ControlGroups {
 public:
  /// Throws std::runtime_error where none may be made.
  ControlGroups();
  ~ControlGroups();
  ControlGroups(const ControlGroups&) = delete;
  ControlGroups& operator=(const ControlGroups&) = delete;

  const std::vector<std::filesystem::path>& folders() const { return folders_; }

 private:
  std::vector<std::filesystem::path> folders_;
};

class SystemdSession {
 public:
  /// Why there can be none on this machine, whatever is installed: a sentence. None: there can.
  static std::optional<std::string> hindrance();

  /// Returns when it takes orders. `environment` is a login's: a home with its configuration folder, a runtime folder,
  /// no display. Throws std::runtime_error.
  SystemdSession(const SessionBus& bus, SessionBus::Environment environment);

  /// As a desktop does once its display is there, which `variables` name, and before it goes. Both return when all is
  /// done, and throw std::runtime_error.
  void beginGraphical(const SessionBus::Environment& variables);
  void endGraphical();

  struct Outcome {
    int status;
    std::string line;  // the first that was written
  };
  /// `systemctl --user WORD...`, or any other program in the login's environment.
  Outcome systemctl(std::vector<std::string> words) const;
  Outcome run(const std::vector<std::string>& command, SessionBus::Environment more = {}) const;
  std::string property(const std::string& unit, const std::string& name) const;

  /// Where units lie that a package has installed.
  std::filesystem::path units() const { return bus_.path("units"); }

 private:
  const SessionBus& bus_;
  SessionBus::Environment environment_;
  ControlGroups groups_;
  std::optional<ChildProcess> manager_;
};

}  // namespace support
