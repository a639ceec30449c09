// The texts of menus and gallery in the languages of the board. The widget's name and description come from the
// extension.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <absl/time/time.h>

#include "host/texts/texts.hpp"

namespace desktop {

/// In menu items, an underscore stands before the mnemonic. No two items of a menu share one.
struct Texts {
  const char* open;
  const char* size;
  const char* small;
  const char* medium;
  const char* large;
  const char* zoom;
  const char* appearance;
  const char* systemScheme;
  const char* light;
  const char* dark;
  const char* solid;
  const char* translucent;
  const char* noBackground;
  const char* noCompositing;  ///< why there is no transparency
  const char* lock;
  const char* startAtLogin;
  const char* add;
  const char* remove;
  const char* undoRemoval;
  const char* reloadNow;
  const char* reloading;   ///< in place of `reloadNow` while it is under way
  const char* lastReload;  ///< with "%s" for the time
  const char* nextReload;  ///< with "%s" for the time
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
  const char* loading;     ///< a placeholder board for screen readers
  const char* openAction;  ///< the actions of a board for screen readers
  const char* menuAction;
};

const Texts& textsFor(host::Language language);

/// When the day was loaded and when it will be.
struct ReloadTimes {
  std::optional<absl::Time> last;  ///< none until it was loaded once
  std::optional<absl::Time> next;  ///< none while it is being loaded
  bool operator==(const ReloadTimes&) const = default;
};

/// Lines about the last and the next refresh, with their times in the device's time zone: "Last refresh: 12:30". A time
/// of another day has its date before it: "Last refresh: 2026-03-01 23:58". Lines for absent times are left out.
std::vector<std::string> reloadLines(const Texts& texts, const ReloadTimes& times, absl::Time now);

/// These lines for a board's tooltip, where one that says "Refreshing…" stands for the next refresh while it is under
/// way.
std::string reloadTooltip(const Texts& texts, const ReloadTimes& times, absl::Time now);

}  // namespace desktop
