#include "host/command_line/programs.hpp"

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace host {
namespace {

/// The program beside those in `folder`, else in its usual folder, else where the installation put it, seen from
/// `folder`. In the usual folder if it is nowhere.
std::filesystem::path found(std::string_view name, const std::filesystem::path& folder,
                            const std::filesystem::path& usual, const std::filesystem::path& installed) {
  std::error_code error;
  for (const auto& candidate : {folder / name, usual / name, (folder / installed / name).lexically_normal()}) {
    if (std::filesystem::exists(candidate, error)) return candidate;
  }
  return usual / name;
}

}  // namespace

std::filesystem::path programPath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::filesystem::path libexecProgram(std::string_view name) {
  return libexecProgram(programPath().parent_path(), name, VAMBA_LIBEXEC_FROM_BIN);
}

std::filesystem::path libexecProgram(const std::filesystem::path& folder, std::string_view name,
                                     const std::filesystem::path& installed) {
  return found(name, folder, folder.parent_path() / "libexec" / "vamba", installed);
}

std::filesystem::path hostProgram() { return hostProgram(programPath(), VAMBA_BIN_FROM_LIBEXEC); }

std::filesystem::path hostProgram(const std::filesystem::path& program, const std::filesystem::path& installed) {
  constexpr std::string_view name = "vamba-host";
  if (program.filename() == name) return program;
  const auto folder = program.parent_path();
  return found(name, folder, folder.parent_path().parent_path() / "bin", installed);
}

std::filesystem::path extensionProgram(const CommandLine& line) {
  return line.extension.value_or(libexecProgram("vamba-widzety"));
}

CommandResult become(std::string_view name, char* const* argv) {
  const auto program = libexecProgram(name);
  ::execv(program.c_str(), argv);
  return std::unexpected(CommandFailure{
      exit_status::noAnswer, "the program " + program.string() + " can't be started: " + std::strerror(errno)});
}

}  // namespace host
