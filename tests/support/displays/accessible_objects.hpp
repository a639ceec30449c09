// What a screen reader meets: the accessible objects that programs on a test's bus offer over AT-SPI. Programs that are
// started while this object lives offer theirs. Needs the package at-spi2-core.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "support/child_process.hpp"
#include "support/displays/geometry.hpp"
#include "support/session_bus.hpp"

namespace support {

struct AccessibleObject {
  int depth = 0;     // 0: a window of the program; its children have 1
  std::string role;  // "frame", "panel", "push button"
  std::string name;
  std::string description;
  std::vector<std::string> actions = {};      // of AT-SPI's interface Action: "open"
  std::vector<std::string> actionNames = {};  // the same in the person's language
  bool focusable = false;
  bool focused = false;
  bool operator==(const AccessibleObject&) const = default;
};

/// Every function throws std::runtime_error where accessibility does not work as on a healthy desktop.
class AccessibleObjects {
 public:
  explicit AccessibleObjects(SessionBus& bus);
  AccessibleObjects(const AccessibleObjects&) = delete;
  AccessibleObjects& operator=(const AccessibleObjects&) = delete;
  ~AccessibleObjects();

  /// All objects of a process, each before its children; none while it has not joined.
  std::vector<AccessibleObject> of(pid_t process);

  /// Where the first object with this name is on the screen; empty if there is none.
  ScreenArea areaOf(pid_t process, const std::string& name);

  /// Does an action of the first object that has one of this name, among those of the process with this name. False if
  /// there is none.
  bool act(pid_t process, const std::string& name, const std::string& action);

  /// What programs told of changed properties so far, as "accessible-name: the new text", the oldest first.
  std::vector<std::string> changes();
  /// What programs asked to have read aloud so far, the oldest first.
  std::vector<std::string> announcements();

 private:
  SessionBus& bus_;
  ChildProcess launcher_;
  BusConnection connection_;
  std::vector<std::string> changes_;
  std::vector<std::string> announcements_;
};

}  // namespace support
