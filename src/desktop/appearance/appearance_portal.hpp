// The appearance that the desktop's settings portal asks for. Runs on the thread's default main context and never
// blocks: without a bus or a portal, or if the portal does not answer, no appearance is reported.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "render/colour/palette.hpp"

namespace desktop {

/// What the person chose for all applications; none where nothing was chosen.
struct DesktopAppearance {
  std::optional<render::Appearance> scheme;
  std::optional<render::Colour> accent;
  bool operator==(const DesktopAppearance&) const = default;
};

class AppearancePortal {
 public:
  /// Begins to ask. `changed` is called whenever the answer differs from the previous one, never from within the
  /// constructor. The answer before the first is an empty `DesktopAppearance`.
  AppearancePortal(const std::string& busAddress, std::function<void(const DesktopAppearance&)> changed);
  ~AppearancePortal();
  AppearancePortal(const AppearancePortal&) = delete;
  AppearancePortal& operator=(const AppearancePortal&) = delete;

 private:
  class Conversation;
  std::unique_ptr<Conversation> conversation_;
};

}  // namespace desktop
