// What the timeline needs of the world outside, handed in where the program starts; a test hands in its own.
#pragma once

#include "platform/calendar/clock.hpp"
#include "platform/keychain/keychain.hpp"
#include "platform/tasks/task_group.hpp"

namespace widzety {

/// References to things that live as long as the process.
struct Otoczenie {
  const platform::Clock& zegar;
  platform::Keychain& magazyn;
  platform::TaskGroup& taski;  ///< where asynchronous answers run
};

}  // namespace widzety
