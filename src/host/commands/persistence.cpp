#include "host/commands/persistence.hpp"

namespace host {

bool mayHelpToAskAgain(const ExtensionFailure& failure) {
  return failure.kind == ExtensionFailure::Kind::died || failure.kind == ExtensionFailure::Kind::nonsense;
}

void pauseBeforeRestart(absl::Duration pause) { absl::SleepFor(pause); }

}  // namespace host
