#include "host/recovery/credential_changes.hpp"

#include <array>
#include <chrono>

#include <sys/inotify.h>
#include <unistd.h>

#include "base/tasks/deadline.hpp"
#include "host/credentials/credential_store.hpp"
#include "platform/keychain/keychain_environment.hpp"

namespace host {

CredentialChanges::CredentialChanges() : inotify_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  const auto folder = itemFolder();
  if (folder) token_ = itemFile(folder->path, tokenAccount);
  watchDeepestFolder();
  if (!folder || !folder->alone) watchSecretService();
}

std::vector<int> CredentialChanges::descriptors() const { return {inotify_.get(), bus_ ? bus_->descriptor() : -1}; }

bool CredentialChanges::take() {
  const bool stored = takeFiles();
  if (!bus_) return stored;
  const auto signalled = bus_->takeSignals();
  // A bus that has gone is readable for ever.
  if (!signalled) bus_.reset();
  return stored || signalled.value_or(false);
}

bool CredentialChanges::takeFiles() {
  alignas(inotify_event) std::array<char, 4096> buffer;
  bool changed = false;
  while (inotify_.isOpen() && ::read(inotify_.get(), buffer.data(), buffer.size()) > 0) changed = true;
  if (!changed || !token_) return false;
  watchDeepestFolder();
  std::error_code none;
  return std::filesystem::exists(*token_, none);
}

/// The folder of the token's file, or the nearest above it that is there: its next one is noticed when it is made.
void CredentialChanges::watchDeepestFolder() {
  if (!token_) return;
  auto folder = token_->parent_path();
  constexpr auto events = IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB | IN_ONLYDIR;
  int watch = -1;
  while ((watch = inotify_add_watch(inotify_.get(), folder.c_str(), events)) < 0 && folder.has_relative_path()) {
    folder = folder.parent_path();
  }
  if (watch_ >= 0 && watch_ != watch) inotify_rm_watch(inotify_.get(), watch_);
  watch_ = watch;
}

void CredentialChanges::watchSecretService() {
  const auto deadline = base::Deadline::after(std::chrono::seconds(1));
  const auto address = platform::sessionBusAddress();
  if (!address) return;
  auto bus = platform::SessionBus::connect(*address, deadline);
  if (!bus) return;
  for (const char* rule : {"type='signal',sender='org.freedesktop.secrets',path_namespace='/org/freedesktop/secrets'",
                           "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                           "member='NameOwnerChanged',arg0='org.freedesktop.secrets'"}) {
    const auto added = bus->call(
        {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "AddMatch"},
        [rule](sd_bus_message* message) { return sd_bus_message_append(message, "s", rule); }, deadline);
    if (!added) return;
  }
  bus_.emplace(*std::move(bus));
}

}  // namespace host
