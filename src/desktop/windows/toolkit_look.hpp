// How boards look by the toolkit's own settings, which are used where the desktop's portal gives no answer.
#pragma once

#include <functional>

#include <glib-object.h>

#include "render/colour/palette.hpp"

namespace desktop {

/// Dark where the settings prefer a dark theme or the theme's background is dark. `textScale` is 1 for 96 dots an inch.
struct ToolkitLook {
  render::Appearance appearance = render::Appearance::light;
  double textScale = 1;
  bool operator==(const ToolkitLook&) const = default;
};

/// The look that the person set. This also reverts what `useAppearance` set.
ToolkitLook toolkitLook();

/// Draws menus and the gallery in this appearance.
void useAppearance(render::Appearance appearance);

/// Calls `changed` whenever one of the settings behind `toolkitLook` changes.
class ToolkitLookChanges {
 public:
  explicit ToolkitLookChanges(std::function<void()> changed);
  ~ToolkitLookChanges();
  ToolkitLookChanges(const ToolkitLookChanges&) = delete;
  ToolkitLookChanges& operator=(const ToolkitLookChanges&) = delete;

 private:
  void settingChanged(GParamSpec* /*property*/) { changed_(); }

  std::function<void()> changed_;
};

}  // namespace desktop
