#include "desktop/program/opening.hpp"

#include <cstdlib>
#include <memory>
#include <utility>

#include <gdk/gdk.h>
#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include "desktop/glib/gobject.hpp"

namespace desktop {
namespace {

/// The application that opens such addresses; null if there is none.
OwnedObject<GAppInfo> applicationFor(const std::string& address) {
  const auto scheme = address.substr(0, address.find(':'));
  return OwnedObject<GAppInfo>(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
}

}  // namespace

/// One click: its targets are tried one after the other, each asynchronously. It deletes itself at the end.
class Opening::Attempt {
 public:
  Attempt(const Messages& messages, std::vector<host::OpenTarget> targets, OwnedObject<GAppLaunchContext> context)
      : messages_(messages), targets_(std::move(targets)), context_(std::move(context)) {}

  /// The systemd unit of the widgets restricts what they may do, and a program that they start would inherit that: no
  /// browser runs so. There, the user's service manager starts it instead.
  static bool isRestricted() {
    const char* const process = std::getenv("SYSTEMD_EXEC_PID");
    return process != nullptr && process == std::to_string(getpid());
  }

  static void tryNext(std::unique_ptr<Attempt> attempt) {
    while (attempt->next_ < attempt->targets_.size()) {
      const auto& target = attempt->targets_[attempt->next_++];
      GAppLaunchContext* const context = attempt->context_.get();
      if (target.kind == host::OpenTarget::Kind::url && isRestricted()) {
        return startByManager(std::move(attempt), applicationFor(target.name).get(), {"open", target.name});
      }
      if (target.kind == host::OpenTarget::Kind::url) {
        g_app_info_launch_default_for_uri_async(target.name.c_str(), context, nullptr, &Attempt::addressOpened,
                                                attempt.release());
        return;
      }
      const OwnedObject<GDesktopAppInfo> entry(g_desktop_app_info_new((target.name + ".desktop").c_str()));
      if (!entry) continue;
      if (isRestricted()) {
        const char* const file = g_desktop_app_info_get_filename(entry.get());
        return startByManager(std::move(attempt), G_APP_INFO(entry.get()), {"launch", file});
      }
      g_app_info_launch_uris_async(G_APP_INFO(entry.get()), nullptr, context, nullptr, &Attempt::entryOpened,
                                   attempt.release());
      return;
    }
    attempt->sayFailure();
  }

 private:
  /// `systemd-run ... gio WORD...`, which ends when the program has been started. `application` gets a startup id, by
  /// which its window may come to the front; it may be null.
  static void startByManager(std::unique_ptr<Attempt> attempt, GAppInfo* application,
                             const std::vector<std::string>& words) {
    std::vector<std::string> command{"systemd-run", "--user", "--collect", "--quiet"};
    char* const id = application == nullptr
                         ? nullptr
                         : g_app_launch_context_get_startup_notify_id(attempt->context_.get(), application, nullptr);
    if (id != nullptr) {
      for (const char* name : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
        command.push_back(std::string("--setenv=") + name + "=" + id);
      }
      g_free(id);
    }
    command.emplace_back("gio");
    command.insert(command.end(), words.begin(), words.end());
    std::vector<const char*> arguments;
    for (const auto& word : command) arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    GError* error = nullptr;
    const OwnedObject<GSubprocess> process(g_subprocess_newv(arguments.data(), G_SUBPROCESS_FLAGS_NONE, &error));
    if (!process) return ended(attempt.release(), error);
    g_subprocess_wait_check_async(process.get(), nullptr, &Attempt::managerAnswered, attempt.release());
  }

  static void managerAnswered(GObject* source, GAsyncResult* result, gpointer data) noexcept {
    GError* error = nullptr;
    g_subprocess_wait_check_finish(reinterpret_cast<GSubprocess*>(source), result, &error);
    ended(data, error);
  }

  static void addressOpened(GObject* /*source*/, GAsyncResult* result, gpointer data) noexcept {
    GError* error = nullptr;
    g_app_info_launch_default_for_uri_finish(result, &error);
    ended(data, error);
  }

  static void entryOpened(GObject* source, GAsyncResult* result, gpointer data) noexcept {
    GError* error = nullptr;
    g_app_info_launch_uris_finish(G_APP_INFO(source), result, &error);
    ended(data, error);
  }

  static void ended(gpointer data, GError* error) {
    std::unique_ptr<Attempt> attempt(static_cast<Attempt*>(data));
    if (error == nullptr) return;
    const OwnedError failure(error);
    const std::string& name = attempt->targets_[attempt->next_ - 1].name;
    if (!attempt->failures_.empty()) attempt->failures_ += "; ";
    attempt->failures_ += "can't open " + name + ": " + failure->message;
    tryNext(std::move(attempt));
  }

  void sayFailure() const {
    if (!failures_.empty()) return messages_.say(failures_);
    messages_.say(targets_.empty() ? "the widget does not say what a click opens"
                                   : targets_.front().name + " is not installed, so a click opens nothing");
  }

  const Messages& messages_;
  std::vector<host::OpenTarget> targets_;
  std::size_t next_ = 0;
  OwnedObject<GAppLaunchContext> context_;
  std::string failures_;
};

Opening::Opening(const Messages& messages) : messages_(messages) {
  for (const char* name : {"GDK_BACKEND", "GDK_GL"}) {
    const char* const value = std::getenv(name);
    changedVariables_.emplace_back(name, value == nullptr ? std::nullopt : std::optional<std::string>(value));
  }
}

void Opening::open(std::vector<host::OpenTarget> targets, guint32 time) const {
  GdkAppLaunchContext* const launch = gdk_display_get_app_launch_context(gdk_display_get_default());
  gdk_app_launch_context_set_timestamp(launch, time);
  OwnedObject<GAppLaunchContext> context(G_APP_LAUNCH_CONTEXT(launch));
  for (const auto& [name, value] : changedVariables_) {
    if (value) {
      g_app_launch_context_setenv(context.get(), name, value->c_str());
    } else {
      g_app_launch_context_unsetenv(context.get(), name);
    }
  }
  Attempt::tryNext(std::make_unique<Attempt>(messages_, std::move(targets), std::move(context)));
}

}  // namespace desktop
