// What the timeline needs of the world outside, handed in where the program starts; a test hands in its own.
#pragma once

#include "base/tasks/task_group.hpp"
#include "platform/calendar/clock.hpp"
#include "platform/keychain/keychain.hpp"

namespace widzety {

/// References to things that live as long as the process.
struct Otoczenie {
  const platform::Clock& zegar;
  platform::Keychain& magazyn;
  base::TaskGroup& taski;  ///< where asynchronous answers run
};

}  // namespace widzety
