#include "host/schedule/zone_changes.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <sys/inotify.h>

namespace host {

ZoneChanges::ZoneChanges(const std::string& folder) {
  const char* const named = std::getenv("TZ");
  if (named != nullptr && *named != '\0') return;
  base::FileDescriptor descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  // The file is usually a link that is replaced as a whole, so its folder is watched.
  if (inotify_add_watch(descriptor.get(), folder.c_str(), IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ONLYDIR) < 0)
    return;
  descriptor_ = std::move(descriptor);
}

bool ZoneChanges::take() {
  bool changed = false;
  alignas(inotify_event) std::array<char, 4096> buffer;
  while (descriptor_.isOpen()) {
    const ssize_t length = read(descriptor_.get(), buffer.data(), buffer.size());
    if (length <= 0) break;
    for (std::size_t at = 0; at + sizeof(inotify_event) <= static_cast<std::size_t>(length);) {
      inotify_event event{};
      std::memcpy(&event, &buffer[at], sizeof event);
      // Padded with NULs.
      if (event.len > 0) changed |= std::string_view(&buffer[at + sizeof event]) == "localtime";
      changed |= (event.mask & IN_Q_OVERFLOW) != 0;
      at += sizeof event + event.len;
    }
  }
  return changed;
}

}  // namespace host
