// The settings portal's word on how things are to look, followed on the thread's default main context. Nothing waits
// for it: where there is no bus, no portal, or one that is silent or knows nothing of the matter, there is just no
// word.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "desktop/appearance/desktop_appearance.hpp"

namespace desktop {

/// The session bus that the environment names, without ever starting one; none where there is none.
std::optional<std::string> sessionBusToAsk();

class AppearancePortal {
 public:
  /// Begins to ask. `changed` is called, never from within the constructor, whenever the answer differs from the one
  /// before; nothing known is where it starts.
  AppearancePortal(const std::string& busAddress, std::function<void(const DesktopAppearance&)> changed);
  ~AppearancePortal();
  AppearancePortal(const AppearancePortal&) = delete;
  AppearancePortal& operator=(const AppearancePortal&) = delete;

 private:
  class Conversation;
  std::unique_ptr<Conversation> conversation_;
};

}  // namespace desktop
