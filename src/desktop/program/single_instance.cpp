#include "desktop/program/single_instance.hpp"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>

#include "base/files/replace_file.hpp"
#include "desktop/glib/session_bus.hpp"
#include "desktop/placement/placement_store.hpp"

namespace desktop {
namespace {

base::FileDescriptor openLock(const std::filesystem::path& file) {
  return base::FileDescriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

/// The file is never removed: another start may already have opened it, and would then lock a file that no later start
/// sees.
base::FileDescriptor lockFile() {
  const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr && *runtime == '/') {
    if (auto lock = openLock(std::filesystem::path(runtime) / "vamba-desktop.lock"); lock.isOpen()) return lock;
  }
  const auto placements = placementsFile(std::getenv);
  if (!placements || !base::makeFolders(placements->parent_path())) return {};
  return openLock(placements->parent_path() / "desktop.lock");
}

constexpr const char* focusAction = "focus";

}  // namespace

SingleInstance::SingleInstance(std::function<void(Request)> calledAgain) : calledAgain_(std::move(calledAgain)) {
  if (!sessionBusToAsk()) return;
  application_.reset(g_application_new("pl.ferol.vamba.Desktop", G_APPLICATION_DEFAULT_FLAGS));
  connect<&SingleInstance::activated>(application_.get(), "activate", this);
  const OwnedObject<GSimpleAction> focus(g_simple_action_new(focusAction, nullptr));
  connect<&SingleInstance::focusAsked>(focus.get(), "activate", this);
  g_action_map_add_action(G_ACTION_MAP(application_.get()), G_ACTION(focus.get()));
}

SingleInstance::Claim SingleInstance::claim(Request request) {
  // A bus that can't be reached is treated like none.
  if (application_ && g_application_register(application_.get(), nullptr, nullptr) != FALSE) {
    GDBusConnection* const bus = g_application_get_dbus_connection(application_.get());
    // By default, the process would end when the bus does.
    if (bus != nullptr) g_dbus_connection_set_exit_on_close(bus, FALSE);
    if (g_application_get_is_remote(application_.get()) != FALSE) {
      if (request == Request::focus) {
        g_action_group_activate_action(G_ACTION_GROUP(application_.get()), focusAction, nullptr);
      } else {
        g_application_activate(application_.get());
      }
      g_dbus_connection_flush_sync(bus, nullptr, nullptr);
      return Claim::told;
    }
  }
  lock_ = lockFile();
  const bool taken = lock_.isOpen() && flock(lock_.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  return taken ? Claim::refused : Claim::first;
}

void SingleInstance::activated() { calledAgain_(Request::gallery); }

void SingleInstance::focusAsked(GVariant* /*parameter*/) { calledAgain_(Request::focus); }

}  // namespace desktop
