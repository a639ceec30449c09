// The names and descriptions of a Wayland compositor's outputs, which the toolkit does not keep.
#pragma once

#include <string>
#include <vector>

struct wl_display;

namespace desktop {

/// The properties of a wl_output of version 4. Those that the compositor does not provide are empty.
struct WaylandOutput {
  std::string make;
  std::string model;
  std::string name;         ///< the connector: "DP-1"
  std::string description;  ///< "Make Model Serial (DP-1)" with most compositors
};

/// The outputs in the order in which the compositor announces them. Blocks until the compositor has answered, on an
/// event queue of its own. Empty if the connection is lost.
std::vector<WaylandOutput> waylandOutputs(wl_display* display);

/// The serial number in the description; empty if there is none. For make "Dell", model "U2720Q", name "DP-1" and
/// description "Dell U2720Q 7H3X (DP-1)" it is "7H3X".
std::string serialOf(const WaylandOutput& output);

}  // namespace desktop
