// Asks a single question with patience: an extension that dies or answers nonsense is started again a few times, after
// pauses that grow, before the command gives up.
//
//   const auto widgets = askPatiently([&] { return extension.widgets(); });
#pragma once

#include <absl/time/clock.h>

#include "base/tasks/deadline.hpp"
#include "host/extension/extension_client.hpp"
#include "host/schedule/growing_pause.hpp"

namespace host {

/// How long a command keeps starting an extension that keeps dying.
inline constexpr absl::Duration patience = absl::Seconds(8);

/// Whether asking again may help. An extension that was silent has had its whole deadline, and one that cannot be
/// started, answers too much or refuses the question will do so again.
inline bool mayHelpToAskAgain(const ExtensionFailure& failure) {
  return failure.kind == ExtensionFailure::Kind::died || failure.kind == ExtensionFailure::Kind::nonsense;
}

/// `ask` until it is answered, or until asking again makes no sense.
template <typename Ask>
auto askPatiently(Ask ask) -> decltype(ask()) {
  const auto giveUp = base::Deadline::after(absl::ToChronoNanoseconds(patience));
  GrowingPause pauses(absl::Seconds(0.5), absl::Seconds(4));
  while (true) {
    auto answer = ask();
    if (answer || !mayHelpToAskAgain(answer.error())) return answer;
    const auto pause = pauses.next();
    if (absl::FromChrono(giveUp.left()) < pause) return answer;
    absl::SleepFor(pause);
  }
}

}  // namespace host
