#include "host/commands/extension_path.hpp"

namespace host {

std::filesystem::path usualExtensionPath() {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  const auto beside = folder / "vamba-widzety";
  if (std::filesystem::exists(beside, error)) return beside;
  return folder / VAMBA_EXTENSION_FROM_BIN;
}

}  // namespace host
