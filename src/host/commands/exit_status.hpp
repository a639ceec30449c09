// The exit statuses of `vamba-host`, which scripts rely on.
#pragma once

namespace host::exit_status {

inline constexpr int shown = 0;             ///< an answer was shown; a board with a sentence instead of data is one
inline constexpr int noAnswer = 1;          ///< the extension could not be started or did not answer
inline constexpr int wrongCommandLine = 2;  ///< or an input or output file that it names can't be used

}  // namespace host::exit_status
