// The words of menus and gallery in the languages of the board, the widget's own name and description apart.
#pragma once

#include <optional>
#include <string>

#include <absl/time/time.h>

#include "host/texts/texts.hpp"

namespace desktop {

/// Menu items hold their mnemonic after an underscore, no two of a menu the same.
struct Texts {
  const char* size;
  const char* small;
  const char* medium;
  const char* large;
  const char* add;
  const char* remove;
  const char* reloadNow;
  const char* nextReload;  ///< with "%s" for the time
  const char* noReload;
  const char* quit;
  const char* galleryTitle;
  const char* addSmall;  ///< what a preview's button does, for those who hear it
  const char* addMedium;
  const char* addLarge;
  const char* addHint;
  const char* loading;  ///< what a redacted board says aloud
};

const Texts& textsFor(host::Language language);

/// The menu's line about the next timeline, its time in the device's zone ("12:45").
std::string nextReloadLine(const Texts& texts, std::optional<absl::Time> reload);

}  // namespace desktop
