// What `vamba-host` can do. Each command gives its result, or why there is none; only main turns that into an exit
// status and a line on standard error.
#pragma once

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"
#include "host/commands/board.hpp"
#include "host/commands/draw.hpp"

namespace host {

/// The extension's widgets, for a person or as JSON.
CommandResult gallery(ExtensionClient& extension, const CommandLine& line);

/// The answer to `placeholder`, `snapshot` or `timeline` as JSON.
CommandResult printAnswer(ExtensionClient& extension, const CommandLine& line);

/// One board, once.
CommandResult show(ExtensionClient& extension, const CommandLine& line, Draw draw);

/// The board at each reload, until SIGINT, SIGTERM or SIGHUP. The extension runs only while it is asked; when it fails,
/// the last board stays.
CommandResult watch(const ExtensionSettings& settings, const CommandLine& line);

/// Reads a token, tries it and stores it, or says where one is stored.
CommandResult signIn(const CommandLine& line);

/// Removes token and address.
CommandResult signOut(const CommandLine& line);

/// Says what is in use and whether it works, with one real request through the extension. Ends with 1 where the widget
/// cannot show the day.
CommandResult doctor(const CommandLine& line);

/// Turns the start at login on or off, or shows the status.
CommandResult autostart(const CommandLine& line);

}  // namespace host
