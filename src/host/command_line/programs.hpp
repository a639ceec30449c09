// The programs of an installation, and how one of them becomes another. A build tree is laid out the same way: `bin/`
// and `libexec/vamba/`.
#pragma once

#include <filesystem>
#include <string_view>

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"

namespace host {

/// The running program itself.
std::filesystem::path programPath();

/// A program of `libexec/vamba`, such as "vamba-widzety": beside the running program, else seen from `bin/`. The path
/// need not exist.
std::filesystem::path libexecProgram(std::string_view name);

/// The extension that the command line names, else the one of this installation.
std::filesystem::path extensionProgram(const CommandLine& line);

/// Replaces the running program by that one, with the same arguments. Returns only when it could not be started.
CommandResult become(std::string_view name, char* const* argv);

}  // namespace host
