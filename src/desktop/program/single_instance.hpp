// Makes the desktop run once in a session: a second start passes on to the first what it was asked to do.
#pragma once

#include <functional>

#include <gio/gio.h>

#include "desktop/windows/gobject.hpp"

namespace desktop {

class SingleInstance {
 public:
  /// What a later start asks the first one to do.
  enum class Request { gallery, focus };

  /// `calledAgain` runs on the main thread each time the program is started again.
  explicit SingleInstance(std::function<void(Request)> calledAgain);

  /// Returns whether this is the first start; if it is not, passes the request on to the first. Without a session bus,
  /// always true.
  bool claim(Request request);

 private:
  void activated();
  void focusAsked(GVariant* parameter);

  std::function<void(Request)> calledAgain_;
  OwnedObject<GApplication> application_;
};

}  // namespace desktop
