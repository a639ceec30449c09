#include "platform/keychain/sd_bus_library.hpp"

#include <optional>

#include <dlfcn.h>

namespace platform {
namespace {

template <class Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

std::optional<SdBusLibrary> load() {
  void* const library = dlopen("libsystemd.so.0", RTLD_LAZY | RTLD_LOCAL);
  if (library == nullptr) return std::nullopt;
  SdBusLibrary bus{};
  const bool whole =
      find(library, "sd_bus_new", bus.newBus) && find(library, "sd_bus_set_address", bus.setAddress) &&
      find(library, "sd_bus_set_bus_client", bus.setBusClient) && find(library, "sd_bus_start", bus.start) &&
      find(library, "sd_bus_is_ready", bus.isReady) && find(library, "sd_bus_process", bus.process) &&
      find(library, "sd_bus_wait", bus.wait) && find(library, "sd_bus_close_unref", bus.closeUnref) &&
      find(library, "sd_bus_call_async", bus.callAsync) && find(library, "sd_bus_slot_unref", bus.slotUnref) &&
      find(library, "sd_bus_message_new_method_call", bus.newMethodCall) &&
      find(library, "sd_bus_message_set_auto_start", bus.setAutoStart) &&
      find(library, "sd_bus_message_sensitive", bus.sensitive) && find(library, "sd_bus_message_ref", bus.messageRef) &&
      find(library, "sd_bus_message_unref", bus.messageUnref) &&
      find(library, "sd_bus_message_get_error", bus.getError) && find(library, "sd_bus_message_append", bus.append) &&
      find(library, "sd_bus_message_open_container", bus.openContainer) &&
      find(library, "sd_bus_message_close_container", bus.closeContainer) &&
      find(library, "sd_bus_message_enter_container", bus.enterContainer) &&
      find(library, "sd_bus_message_exit_container", bus.exitContainer) &&
      find(library, "sd_bus_message_read", bus.read) && find(library, "sd_bus_message_read_array", bus.readArray);
  if (!whole) return std::nullopt;
  return bus;
}

}  // namespace

const SdBusLibrary* sdBusLibrary() {
  static const std::optional<SdBusLibrary> library = load();
  return library ? &*library : nullptr;
}

}  // namespace platform
