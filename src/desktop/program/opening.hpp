// Opens what a click on a widget is for: an application by its desktop entry, or an address in the browser.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <glib.h>

#include "desktop/program/messages.hpp"
#include "host/extension/answers.hpp"

namespace desktop {

class Opening {
 public:
  /// To be constructed before the environment is changed for the toolkit: what is opened gets the environment as it
  /// was.
  explicit Opening(const Messages& messages);

  /// Opens the first target that can be opened and returns before it is. Desktop entries that are not installed are
  /// passed over. If nothing could be opened, a message says why, in one line. `time` is the display's time of the
  /// click or key, by which the opened window may come to the front.
  void open(std::vector<host::OpenTarget> targets, guint32 time) const;

 private:
  class Attempt;

  const Messages& messages_;
  std::vector<std::pair<const char*, std::optional<std::string>>> changedVariables_;  ///< as they were
};

}  // namespace desktop
