// One desktop a session: a second start tells the first, which opens its gallery.
#pragma once

#include <functional>

#include <gio/gio.h>

#include "desktop/windows/gobject.hpp"

namespace desktop {

class SingleInstance {
 public:
  /// `calledAgain` runs on the main thread whenever the program was started
  /// once more.
  explicit SingleInstance(std::function<void()> calledAgain);

  /// Whether this one is the first; where it is not, the first is told. Without a session bus every start is the first.
  bool claim();

 private:
  void activated();

  std::function<void()> calledAgain_;
  OwnedObject<GApplication> application_;
};

}  // namespace desktop
