// The texts of menus and gallery in the languages of the board. The widget's name and description come from the
// extension.
#pragma once

#include <optional>
#include <string>

#include <absl/time/time.h>

#include "host/texts/texts.hpp"

namespace desktop {

/// In menu items, an underscore stands before the mnemonic. No two items of a menu share one.
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
  const char* addSmall;  ///< a preview's button for screen readers
  const char* addMedium;
  const char* addLarge;
  const char* addHint;
  const char* addedTopLeft;  ///< where a widget was added from the gallery
  const char* addedTopRight;
  const char* addedBottomLeft;
  const char* addedBottomRight;
  const char* loading;  ///< a placeholder board for screen readers
};

const Texts& textsFor(host::Language language);

/// The menu's line about the next refresh, with its time in the device's time zone: "Next refresh: 12:45".
std::string nextReloadLine(const Texts& texts, std::optional<absl::Time> reload);

}  // namespace desktop
