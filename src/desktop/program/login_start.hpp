// Whether the widgets start at login, for the menu: what `vamba-host autostart` shows and changes.
#pragma once

#include <thread>

#include "desktop/program/messages.hpp"

namespace desktop {

class LoginStart {
 public:
  explicit LoginStart(const Messages& messages) : messages_(messages) {}

  /// Off if it can't be told.
  bool isOn() const;

  /// Turns it on or off, on a thread, since the service manager is asked for it. A message says why that failed.
  void set(bool on);

 private:
  const Messages& messages_;
  std::jthread change_;
};

}  // namespace desktop
