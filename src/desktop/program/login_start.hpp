// Whether the widgets start at login, for the menu: what `vamba-host autostart` shows and changes.
#pragma once

#include <thread>

#include "desktop/program/journal.hpp"

namespace desktop {

class LoginStart {
 public:
  explicit LoginStart(const Journal& journal) : journal_(journal) {}

  /// Off if it can't be told.
  bool isOn() const;

  /// Turns it on or off, on a thread, since the service manager is asked for it. A failure is said in the journal.
  void set(bool on);

 private:
  const Journal& journal_;
  std::jthread change_;
};

}  // namespace desktop
