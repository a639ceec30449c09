#include "host/autostart/start_files.hpp"

#include "base/text/control_characters.hpp"

namespace host {
namespace {

// Names the program without quotes, and marks the file as one that may be replaced and removed here. Readers of both
// kinds of files ignore keys that begin with "X-".
constexpr std::string_view programKey = "X-Vamba-Program=";

/// With `escape` before each of the characters.
std::string escaped(std::string_view text, std::string_view characters, char escape) {
  std::string result;
  for (const char c : text) {
    if (characters.find(c) != std::string_view::npos) result += escape;
    result += c;
  }
  return result;
}

std::string doubledPercent(std::string_view text) { return escaped(text, "%", '%'); }

/// A string value of a desktop entry.
std::string entryString(std::string_view text) { return escaped(text, "\\", '\\'); }

std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    result += text[i];
  }
  return result;
}

// What the widgets and their extension never do (docs/decisions/0008-start-with-the-session.md). The systemd of any
// user can filter system calls.
constexpr std::string_view withoutUnusedCalls =
    "NoNewPrivileges=yes\n"
    "SystemCallArchitectures=native\n"
    "SystemCallFilter=@system-service seccomp landlock_create_ruleset landlock_add_rule landlock_restrict_self\n"
    "SystemCallFilter=~@privileged\n"
    "SystemCallErrorNumber=EPERM\n"
    "RestrictAddressFamilies=AF_UNIX AF_INET AF_INET6 AF_NETLINK\n"
    "RestrictNamespaces=yes\n"
    "RestrictRealtime=yes\n"
    "RestrictSUIDSGID=yes\n"
    "MemoryDenyWriteExecute=yes\n"
    "LockPersonality=yes\n"
    "KeyringMode=private\n"
    "UMask=0077\n";

// Only in a user namespace of its own may a user's service give up capabilities that it could gain.
constexpr std::string_view withoutCapabilities =
    "PrivateUsers=yes\n"
    "CapabilityBoundingSet=\n";

bool hasLine(std::string_view text, std::string_view wanted) {
  return ("\n" + std::string(text) + "\n").find("\n" + std::string(wanted) + "\n") != std::string::npos;
}

}  // namespace

std::string systemdUnit(const std::filesystem::path& program, UnitCapabilities capabilities) {
  // The colon stops systemd from expanding '$' as a variable.
  const std::string quoted = "\"" + doubledPercent(program.string()) + "\"";
  return "# Written by `vamba-host autostart on`; `vamba-host autostart off` removes it.\n"
         "[Unit]\n"
         "Description=Vamba widgets on the desktop\n"
         "PartOf=graphical-session.target\n"
         "After=graphical-session.target\n" +
         std::string(programKey) + entryString(doubledPercent(program.string())) +
         "\n\n"
         "[Service]\n"
         "ExecStart=:" +
         quoted +
         " desktop --at-login\n"
         "Restart=on-failure\n"
         "RestartSec=5\n" +
         std::string(withoutUnusedCalls) +
         std::string(capabilities == UnitCapabilities::takenAway ? withoutCapabilities : "") +
         "\n[Install]\n"
         "WantedBy=graphical-session.target\n";
}

std::string autostartEntry(const std::filesystem::path& program) {
  // Escaped twice: first as an argument in quotes, then as a string value of the file.
  const std::string quoted = "\"" + doubledPercent(escaped(program.string(), "\"`$\\", '\\')) + "\"";
  return "# Written by `vamba-host autostart on`; `vamba-host autostart off` removes it.\n"
         "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=Vamba\n"
         "Comment=Vamba widgets on the desktop\n"
         "Comment[pl]=Widżety Vamby na pulpicie\n"
         "Comment[lt]=Vamba valdikliai darbalaukyje\n"
         "TryExec=" +
         entryString(program.string()) + "\nExec=" + entryString(quoted + " desktop --at-login") +
         "\nTerminal=false\n"
         "NoDisplay=true\n" +
         std::string(programKey) + entryString(doubledPercent(program.string())) + "\n";
}

bool systemdCanStart(const std::filesystem::path& program) {
  return program.native().find_first_of("\"'\\") == std::string::npos;
}

std::expected<void, std::string> canBeStarted(const std::filesystem::path& program) {
  const std::string& path = program.native();
  if (base::holdsControl(path)) {
    return std::unexpected("a program whose path holds a control character can't be started with a session");
  }
  if (path.find('=') != std::string::npos) {
    return std::unexpected(path + " can't be started with a session, since its path holds a '='");
  }
  return {};
}

std::optional<std::filesystem::path> startedProgram(std::string_view text) {
  const std::string lines = "\n" + std::string(text);
  const std::string key = "\n" + std::string(programKey);
  const auto found = lines.find(key);
  if (found == std::string::npos) return std::nullopt;
  const auto start = found + key.size();
  const std::string value = unescaped(std::string_view(lines).substr(start, lines.find('\n', start) - start));
  std::string path;
  for (std::size_t i = 0; i < value.size(); ++i) {
    path += value[i];
    if (value[i] == '%' && i + 1 < value.size() && value[i + 1] == '%') ++i;
  }
  return path;
}

bool isSwitchedOff(std::string_view entry) {
  return hasLine(entry, "Hidden=true") || hasLine(entry, "X-GNOME-Autostart-enabled=false");
}

}  // namespace host
