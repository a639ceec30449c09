#include "host/command_line/programs.hpp"

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace host {

std::filesystem::path programPath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::filesystem::path libexecProgram(std::string_view name) {
  const auto folder = programPath().parent_path();
  std::error_code error;
  if (auto beside = folder / name; std::filesystem::exists(beside, error)) return beside;
  return folder.parent_path() / "libexec" / "vamba" / name;
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
