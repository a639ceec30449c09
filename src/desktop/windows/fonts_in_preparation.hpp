// The fonts of boards, loaded on a thread of their own while the toolkit parses its theme.
#pragma once

#include <string>
#include <thread>

#include "desktop/windows/gobject.hpp"

using PangoFontMap = struct _PangoFontMap;

namespace desktop {

class FontsInPreparation {
 public:
  /// Begins to load at once.
  explicit FontsInPreparation(const std::string& language);

  /// Waits for what is loading; from now on the calling thread draws with it, the toolkit too.
  void use();

 private:
  OwnedObject<PangoFontMap> fonts_;
  std::jthread thread_;  // last: it uses the fonts
};

}  // namespace desktop
