// Reads the device token: typed on a terminal without echo, or from standard input.
#pragma once

#include <expected>

#include "base/text/secret_text.hpp"
#include "host/command_line/outcome.hpp"
#include "host/schedule/wake_ups.hpp"

namespace host {

/// Without one line end at its end. A token that no HTTP header could carry (empty, or with a line end or another
/// control character in it) is refused with status 2. Gives up when one of the signals comes.
std::expected<base::SecretText, CommandFailure> readToken(SignalDescriptor& signals);

}  // namespace host
