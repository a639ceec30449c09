#include "silent_resolver.hpp"

#include <condition_variable>
#include <mutex>
#include <string_view>

#include <dlfcn.h>
#include <netdb.h>

#include "support/waiting.hpp"

namespace platform {
namespace {

struct LookUps {
  std::mutex mutex;
  std::condition_variable changed;
  bool silent = false;
  int waiting = 0;
};

LookUps& lookUps() {
  static LookUps state;
  return state;
}

}  // namespace

SilentResolver::SilentResolver() {
  const std::lock_guard lock(lookUps().mutex);
  lookUps().silent = true;
}

SilentResolver::~SilentResolver() {
  std::unique_lock lock(lookUps().mutex);
  lookUps().silent = false;
  lookUps().changed.notify_all();
  lookUps().changed.wait(lock, [] { return lookUps().waiting == 0; });
}

bool SilentResolver::waitForLookUp() {
  std::unique_lock lock(lookUps().mutex);
  return lookUps().changed.wait_for(lock, support::longPatience, [] { return lookUps().waiting > 0; });
}

}  // namespace platform

extern "C" int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
  using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
  if (node == nullptr || !std::string_view(node).ends_with(".silent")) return real(node, service, hints, result);
  platform::LookUps& state = platform::lookUps();
  std::unique_lock lock(state.mutex);
  ++state.waiting;
  state.changed.notify_all();
  state.changed.wait(lock, [&state] { return !state.silent; });
  --state.waiting;
  state.changed.notify_all();
  return EAI_AGAIN;
}
