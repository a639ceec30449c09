// The files that start the widgets with a session: a unit of the user's systemd, and an entry of XDG autostart. Only
// their text: autostart.hpp says where they are.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// What a unit takes away from the program besides the system calls that it never makes.
enum class UnitCapabilities { kept, takenAway };

/// A unit that the graphical session starts and ends (systemd.unit(5), systemd.service(5)), for a program that
/// `systemdCanStart`. Where the user's systemd cannot take capabilities away, a unit that asks for it never starts.
std::string systemdUnit(const std::filesystem::path& program, UnitCapabilities capabilities);

/// An entry of the Desktop Application Autostart Specification.
std::string autostartEntry(const std::filesystem::path& program);

/// Whether a unit can start the program: systemd refuses one with quotes or backslashes in its path.
bool systemdCanStart(const std::filesystem::path& program);

/// Whether an entry can start the program: its path may hold anything but control characters and '=', which the Desktop
/// Entry Specification forbids. The error is a sentence for a person.
std::expected<void, std::string> canBeStarted(const std::filesystem::path& program);

/// The program that one of these texts starts; none for a text that was not made here.
std::optional<std::filesystem::path> startedProgram(std::string_view text);

/// Whether a settings program has switched the entry off, so that sessions skip it.
bool isSwitchedOff(std::string_view entry);

}  // namespace host
