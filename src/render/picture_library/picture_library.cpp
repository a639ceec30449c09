#include "render/picture_library/picture_library.hpp"

#include <string_view>

#include <dlfcn.h>

namespace render {

std::filesystem::path pictureModulePath(const std::filesystem::path& programFolder) {
  constexpr const char* name = "vamba-pictures.so";
  const std::filesystem::path folders[] = {programFolder, programFolder / ".." / "libexec" / "vamba",
                                           programFolder / ".." / ".." / "libexec" / "vamba"};
  for (const auto& folder : folders) {
    std::error_code unreadable;
    if (std::filesystem::exists(folder / name, unreadable)) return folder / name;
  }
  return folders[1] / name;
}

std::expected<PictureLibrary, std::string> PictureLibrary::open(const std::filesystem::path& module) {
  // Its libraries hold state for the thread and the process, and are not made to be unloaded.
  void* handle = dlopen(module.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
  if (handle == nullptr) return std::unexpected("cannot load the picture module: " + std::string(dlerror()));
  const auto entry = reinterpret_cast<PictureModuleEntry>(dlsym(handle, pictureModuleEntry));
  if (entry == nullptr || std::string_view(entry()->build) != VAMBA_BUILD) {
    return std::unexpected("the picture module " + module.string() + " is of another version");
  }
  return PictureLibrary(*entry());
}

}  // namespace render

#ifdef __SANITIZE_ADDRESS__
// The font library keeps what it has read until the process ends, where the leak checker does not find it.
extern "C" const char* __lsan_default_suppressions();
extern "C" __attribute__((weak)) const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
#endif
