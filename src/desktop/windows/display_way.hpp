// How windows are put at the bottom of the desktop. This is decided before the toolkit starts, since the toolkit cannot
// change its display afterwards.
#pragma once

#include <string_view>

namespace desktop {

enum class DisplayWay {
  layerShell,  ///< a Wayland compositor with layer shell: windows are on its bottom layer
  x11,         ///< an X server, or that of a Wayland compositor: windows are kept below others
  plain,       ///< a Wayland compositor with neither: the compositor decides place and stacking
  none,        ///< the environment names no display
};

/// Decides by the environment and by whether the compositor offers wlr-layer-shell-unstable-v1, for which it connects
/// to the compositor once. GDK_BACKEND=x11 in the environment forces X11.
DisplayWay chooseDisplayWay();

/// Sets the environment variables that make the toolkit use it. Must be called before any thread is started.
void useDisplayWay(DisplayWay way);

/// Calls `handler` when the connection to the X server is lost. It must not return. On Wayland the toolkit prints a
/// message itself. To be called after the toolkit has started.
void onXServerLost(DisplayWay way, void (*handler)());

/// Whether the toolkit, which has started on Wayland, is connected to KWin.
bool compositorIsKwin();

/// For a person: "Wayland, on the bottom layer".
std::string_view describe(DisplayWay way);

}  // namespace desktop
