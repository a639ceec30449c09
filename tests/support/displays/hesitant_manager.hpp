// A window manager that shows a window only once it was asked a second time, as one that is starting may sit on what it
// was asked first. It does nothing else, and only when it is told to.
#pragma once

#include <map>
#include <string>

#include "support/displays/x_connection.hpp"

namespace support {

class HesitantManager {
 public:
  /// Throws std::runtime_error where the display has a window manager.
  explicit HesitantManager(const std::string& display);

  /// Does what it was asked so far.
  void handleRequests();

 private:
  XConnection connection_;
  std::map<XWindow, int> asked_;
};

}  // namespace support
