// What a Wayland compositor says of its outputs beyond what the toolkit keeps: their names and descriptions.
#pragma once

#include <string>
#include <vector>

struct wl_display;

namespace desktop {

/// wl_output of version 4. What the compositor does not tell is empty.
struct WaylandOutput {
  std::string make;
  std::string model;
  std::string name;         ///< of the connector: "DP-1"
  std::string description;  ///< "Make Model Serial (DP-1)" with most compositors
};

/// In the order in which the compositor announces them. Asks it and waits for its answer, on a queue of its own. Empty
/// where it has gone.
std::vector<WaylandOutput> waylandOutputs(wl_display* display);

/// The serial number in the description; empty where there is none.
std::string serialOf(const WaylandOutput& output);

}  // namespace desktop
