// Loading a day: the sign-in check, three requests at once, the selections, and every failure folded into a sentence.
#pragma once

#include <stop_token>

#include "widzety/timeline/otoczenie.hpp"
#include "widzety/timeline/wpis.hpp"

namespace widzety {

/// Builds the day's entry from the service. It never fails: without a token, and on the first failure in the order
/// tasks, inbox, meetings, the entry carries a sentence and nothing else, and `otoczenie.diagnostyka` is
/// told the cause, unless it is the stop. Keeps nothing between calls. Blocks for 12.3 s at most, keychain
/// included; a stop ends the requests, and no request outlives the call.
Wpis wczytajWpis(const Otoczenie& otoczenie, std::stop_token stop);

}  // namespace widzety
