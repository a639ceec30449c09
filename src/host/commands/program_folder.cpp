#include "host/commands/program_folder.hpp"

#include <array>

namespace host {
namespace {

/// The first of these seen from the program's folder that is there, else the second.
std::filesystem::path firstThere(const std::array<const char*, 3>& names) {
  for (const char* name : names) {
    std::error_code error;
    if (auto path = programFolder() / name; std::filesystem::exists(path, error)) return path;
  }
  return programFolder() / names[1];
}

}  // namespace

std::filesystem::path programPath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

std::filesystem::path programFolder() { return programPath().parent_path(); }

std::filesystem::path usualExtensionPath() {
  // Beside the desktop's program, beside the host in a build tree, from the host, from the desktop in a build tree.
  return firstThere({"vamba-widzety", "../libexec/vamba/vamba-widzety", "../../bin/vamba-widzety"});
}

std::filesystem::path desktopProgramPath() { return programFolder() / "../libexec/vamba/vamba-desktop"; }

}  // namespace host
