// Waiting for what another process does, where nothing announces it: the condition is asked again until it holds.
#pragma once

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

#include <poll.h>

namespace support {

/// What a loaded machine may take at most for what needs no waiting.
inline constexpr std::chrono::seconds longPatience{30};

/// Whether the condition came to hold in time. It is asked at least twice: at once and at the end.
template <typename Condition>
bool eventually(Condition&& condition, std::chrono::steady_clock::duration patience = longPatience) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return condition();
    poll(nullptr, 0, 5);
  }
  return true;
}

/// The same for what a test cannot go on without. Throws std::runtime_error that says what was waited for and what
/// `circumstances` tells of it, such as the log of a server.
template <typename Condition>
void waitUntil(
    const std::string& what, Condition&& condition,
    const std::function<std::string()>& circumstances = [] { return std::string(); }) {
  if (!eventually(condition)) throw std::runtime_error("waited in vain until " + what + "\n" + circumstances());
}

}  // namespace support
