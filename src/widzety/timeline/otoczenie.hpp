// The clock, keychain and tasks that the timeline uses. `main` hands in the real ones, a test its own.
#pragma once

#include <functional>
#include <string_view>

#include "base/tasks/task_group.hpp"
#include "platform/calendar/clock.hpp"
#include "platform/keychain/keychain.hpp"

namespace widzety {

/// Refers to objects that must outlive it and its copies.
struct Otoczenie {
  const platform::Clock& zegar;
  platform::Keychain& magazyn;
  base::TaskGroup& taski;  ///< where asynchronous answers run
  /// Told why a day was not loaded: one line, without a line end, that holds no secret. Called on any thread.
  std::function<void(std::string_view)> diagnostyka = [](std::string_view) {};
};

}  // namespace widzety
