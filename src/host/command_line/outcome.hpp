// How a command ends: with a result, or with a sentence and an exit status that scripts rely on.
#pragma once

#include <expected>
#include <string>

namespace host {

namespace exit_status {

inline constexpr int shown = 0;             ///< an answer was shown; a board with a sentence instead of data is one
inline constexpr int noAnswer = 1;          ///< the extension could not be started or did not answer
inline constexpr int wrongCommandLine = 2;  ///< or an input or output file that it names can't be used
inline constexpr int off = 3;               ///< `autostart status`: the widgets do not start at login

}  // namespace exit_status

/// Why a command has no result: a sentence for a person and the exit status.
struct CommandFailure {
  int status;
  std::string message;
};

/// A command that did what was asked; scripts may be told more by its status.
struct CommandDone {
  int status = exit_status::shown;
};

using CommandResult = std::expected<CommandDone, CommandFailure>;

}  // namespace host
