// The text library stands on GLib, which has no way to report that it can have no thread or no memory: it writes a
// message and ends the process by a signal.
#pragma once

namespace render {

/// From here on the process ends with status 1 instead, after the message in one line on standard error. `program` is
/// the line's beginning and must be a literal.
void endWithStatusOnFatalMessages(const char* program);

}  // namespace render
