// In which way windows get to the bottom of the desktop. Settled before the toolkit starts, for it can't change its
// mind afterwards.
#pragma once

#include <string_view>

namespace desktop {

enum class DisplayWay {
  layerShell,  ///< a Wayland compositor with layers: on its bottom layer
  x11,         ///< an X server, or a Wayland compositor's own: below other windows
  plain,       ///< a Wayland compositor without either: windows that it puts where it likes
  none,        ///< no display is named
};

/// By the environment and by what the compositor offers (wlr-layer-shell-unstable-v1). Asks the compositor, once.
DisplayWay chooseDisplayWay();

/// Tells the toolkit, through its environment. Before any thread is started.
void useDisplayWay(DisplayWay way);

/// Called when the X server goes, which ends the program: the toolkit leaves without a word, with Wayland it has its
/// own. For once the toolkit has started; does not return.
using LastWords = void (*)();
void sayWhenServerGoes(DisplayWay way, LastWords lastWords);

/// For a person: "Wayland, on the bottom layer".
std::string_view describe(DisplayWay way);

}  // namespace desktop
