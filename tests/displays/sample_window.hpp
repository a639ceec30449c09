// The sample window as a test starts it on one of its desktops.
#pragma once

#include <string>
#include <vector>

#include "support/child_process.hpp"
#include "support/session_bus.hpp"

/// Returns when it has drawn itself.
inline support::ChildProcess sampleWindow(const support::SessionBus::Environment& environment,
                                          std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), VAMBA_SAMPLE_WINDOW);
  support::ChildProcess process(
      {.command = std::move(arguments), .environment = support::environmentLines(environment), .input = {}});
  if (const auto line = process.firstLine(); line != "shown") throw std::runtime_error("no window but: " + line);
  return process;
}
