#include "host/commands/program_folder.hpp"

namespace host {

std::filesystem::path programFolder() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path usualExtensionPath() {
  std::error_code error;
  const auto beside = programFolder() / "vamba-widzety";
  if (std::filesystem::exists(beside, error)) return beside;
  return programFolder() / "../libexec/vamba/vamba-widzety";
}

}  // namespace host
