// Makes the desktop run once in a session: a second start notifies the first, which opens its gallery.
#pragma once

#include <functional>

#include <gio/gio.h>

#include "desktop/windows/gobject.hpp"

namespace desktop {

class SingleInstance {
 public:
  /// `calledAgain` runs on the main thread each time the program is started again.
  explicit SingleInstance(std::function<void()> calledAgain);

  /// Returns whether this is the first start; if it is not, notifies the first. Without a session bus, always true.
  bool claim();

 private:
  void activated();

  std::function<void()> calledAgain_;
  OwnedObject<GApplication> application_;
};

}  // namespace desktop
