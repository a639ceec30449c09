// The programs of an installation, and how one of them becomes another. A build tree is laid out as most installations
// are: `bin/` and `libexec/vamba/`.
#pragma once

#include <filesystem>
#include <string_view>

#include "host/command_line/command_line.hpp"
#include "host/command_line/outcome.hpp"

namespace host {

/// The running program itself.
std::filesystem::path programPath();

/// A program of `libexec/vamba`, such as "vamba-widzety", seen from the running program. The path need not exist.
std::filesystem::path libexecProgram(std::string_view name);

/// The same, seen from a program in `folder`: the first of these that exists, else the second.
/// - beside it
/// - in ../libexec/vamba
/// - in `installed`, where the build was configured to install it: a path from the folder, as a whole installation may
///   have been moved, or an absolute one
std::filesystem::path libexecProgram(const std::filesystem::path& folder, std::string_view name,
                                     const std::filesystem::path& installed);

/// `vamba-host` of this installation, whichever of its programs is running.
std::filesystem::path hostProgram();

/// The same, seen from a program: itself if it is the host, else the first of these that exists, else the second.
/// - beside it
/// - in ../../bin
/// - in `installed`, a path from the program's folder or an absolute one
std::filesystem::path hostProgram(const std::filesystem::path& program, const std::filesystem::path& installed);

/// The extension that the command line names, else the one of this installation.
std::filesystem::path extensionProgram(const CommandLine& line);

/// Replaces the running program by that one, with the same arguments. Returns only when it could not be started.
CommandResult become(std::string_view name, char* const* argv);

}  // namespace host
