// A single question asked with patience: an extension that dies or talks nonsense is started again a few times, with
// pauses that grow, before the command gives up.
#pragma once

#include <absl/time/clock.h>

#include "host/extension/extension_client.hpp"
#include "host/schedule/growing_pause.hpp"

namespace host {

/// How long a command keeps starting an extension that keeps dying.
inline constexpr absl::Duration patience = absl::Seconds(8);

/// Whether asking again may help. One that was silent has had its whole deadline; one that can't be started or refuses
/// the question will do so again.
bool mayHelpToAskAgain(const ExtensionFailure& failure);

void pauseBeforeRestart(absl::Duration pause);

/// `ask` until it is answered, or until asking again makes no sense.
template <typename Ask>
auto askPatiently(Ask ask) -> decltype(ask()) {
  const absl::Time giveUp = absl::Now() + patience;
  GrowingPause pauses(absl::Seconds(0.5), absl::Seconds(4));
  while (true) {
    auto answer = ask();
    if (answer || !mayHelpToAskAgain(answer.error())) return answer;
    const auto pause = pauses.next();
    if (absl::Now() + pause > giveUp) return answer;
    pauseBeforeRestart(pause);
  }
}

}  // namespace host
