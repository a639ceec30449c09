// A small settings manager of an X desktop (the XSETTINGS protocol, version 0.5), for what changes at run time.
#pragma once

#include <cstdint>

#include "support/displays/x_connection.hpp"

namespace support {

class XSettings {
 public:
  /// Takes the selection of the first screen on a connection of its own, which ends with the object.
  explicit XSettings(const std::string& display);
  ~XSettings();
  XSettings(const XSettings&) = delete;
  XSettings& operator=(const XSettings&) = delete;

  /// `Xft/DPI`.
  void setResolution(int dotsPerInch);

 private:
  XConnection connection_;
  XWindow window_;
  std::uint32_t serial_ = 0;
};

}  // namespace support
