#include "desktop/windows/wayland_outputs.hpp"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(WaylandOutput, SerialIsWhatTheDescriptionSaysBetweenModelAndConnector) {
  const struct {
    WaylandOutput output;
    const char* serial;
  } cases[] = {
      {{"Dell Inc.", "DELL U2720Q", "DP-1", "Dell Inc. DELL U2720Q 7XK1Z3 (DP-1)"}, "7XK1Z3"},
      {{"Dell Inc.", "DELL U2720Q", "DP-1", "Dell Inc. DELL U2720Q (7 X) (DP-1)"}, "(7 X)"},
      {{"headless", "headless", "HEADLESS-1", "headless headless (HEADLESS-1)"}, ""},
      {{"Make", "Model", "DP-1", "Make Model Unknown (DP-1)"}, ""},
      {{"Make", "Model", "DP-1", "Make Model (null) (DP-1)"}, ""},
      {{"Make", "Model", "DP-1", "Built-in display"}, ""},  // another compositor's words
      {{"Make", "Model", "", "Make Model 12 ()"}, ""},
      {{"Make", "Model", "DP-1", ""}, ""},
  };
  for (const auto& [output, serial] : cases) EXPECT_EQ(serialOf(output), serial) << output.description;
}

}  // namespace
}  // namespace desktop
