#include "platform/url_session/transfer_module.hpp"

#include <filesystem>
#include <string_view>
#include <system_error>

#include <dlfcn.h>

namespace platform {
namespace {

// Not the dynamic linker's $ORIGIN, which under a sanitizer is the folder of the sanitizer's library.
std::filesystem::path modulePath() {
  constexpr const char* name = "vamba-transfers.so";
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  // An installed program and its module lie together; in a build tree programs are in bin/, tests in bin/tests/.
  for (const char* const folder : {".", "../libexec/vamba", "../../libexec/vamba"}) {
    if (auto path = program / folder / name; std::filesystem::exists(path, error)) return path;
  }
  return program / name;
}

}  // namespace

std::expected<const TransferFunctions*, std::string> openTransferModule() {
  // Its libraries are not made to be unloaded. Their functions are looked up as they are called, as those of a
  // program's own libraries are: most never are.
  void* const handle = dlopen(modulePath().c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (handle == nullptr) return std::unexpected("cannot load the transfer module: " + std::string(dlerror()));
  const auto entry = reinterpret_cast<TransferModuleEntry>(dlsym(handle, transferModuleEntry));
  if (entry == nullptr || std::string_view(entry()->build) != VAMBA_BUILD) {
    return std::unexpected("the transfer module is of another version");
  }
  return entry();
}

}  // namespace platform
