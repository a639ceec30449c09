// Makes the desktop run once in a session: a second start passes on to the first what it was asked to do. Where the
// session bus can't do that, a locked file tells of the first, and a second start is refused.
#pragma once

#include <functional>

#include <gio/gio.h>

#include "base/descriptors/file_descriptor.hpp"
#include "desktop/glib/gobject.hpp"

namespace desktop {

class SingleInstance {
 public:
  /// What a later start asks the first one to do.
  enum class Request { gallery, focus };

  enum class Claim {
    first,
    told,    ///< another one runs and has got the request
    refused  ///< another one runs that the session bus does not know
  };

  /// `calledAgain` runs on the main thread each time the program is started again.
  explicit SingleInstance(std::function<void(Request)> calledAgain);

  /// The first start keeps a lock, until it ends, on `$XDG_RUNTIME_DIR/vamba-desktop.lock`, else on `desktop.lock`
  /// beside the placements. If neither can be created, every start without a session bus is the first.
  Claim claim(Request request);

 private:
  void activated();
  void focusAsked(GVariant* parameter);

  std::function<void(Request)> calledAgain_;
  OwnedObject<GApplication> application_;
  base::FileDescriptor lock_;
};

}  // namespace desktop
