#include "desktop/appearance/appearance_portal.hpp"

#include <map>
#include <memory>
#include <string_view>
#include <utility>

#include <gio/gio.h>

#include "desktop/appearance/portal_values.hpp"
#include "desktop/glib/gobject.hpp"
#include "desktop/glib/session_bus.hpp"

namespace desktop {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* schemeKey = "color-scheme";
constexpr const char* accentKey = "accent-color";

}  // namespace

class AppearancePortal::Conversation {
 public:
  Conversation(const std::string& busAddress, std::function<void(const DesktopAppearance&)> changed)
      : changed_(std::move(changed)), bus_(busAddress, [this] { begin(); }) {}

  ~Conversation() {
    if (telling_ != 0) g_source_remove(telling_);
  }
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

 private:
  /// The context of an answer. The conversation may have ended when it arrives.
  struct Question {
    Conversation* asker;
    OwnedObject<GCancellable> ended;
    const char* key;
    const char* method;
    GDBusCallFlags flags;
    int announcements;  ///< changes of this key before the question
  };

  static GCancellable* ref(GCancellable* cancellable) { return static_cast<GCancellable*>(g_object_ref(cancellable)); }

  void begin() {
    bus_.subscribe({portalName, portalPath, settings, "SettingChanged", appearance}, &Conversation::settingChanged,
                   this);
    constexpr const char* bus = "org.freedesktop.DBus";
    bus_.subscribe({bus, "/org/freedesktop/DBus", bus, "NameOwnerChanged", portalName}, &Conversation::ownerChanged,
                   this);
    askForBoth(G_DBUS_CALL_FLAGS_NONE);
  }

  void askForBoth(GDBusCallFlags flags) {
    for (const char* key : {schemeKey, accentKey}) ask(key, "ReadOne", flags);
  }

  void ask(const char* key, const char* method, GDBusCallFlags flags) {
    ++open_;
    // Without a timeout, since nothing waits for the answer. A portal may need as long as the slowest of its backends,
    // each of which may take up to the usual timeout.
    g_dbus_connection_call(
        bus_.connection(), portalName, portalPath, settings, method, g_variant_new("(ss)", appearance, key),
        G_VARIANT_TYPE("(v)"), flags, G_MAXINT, bus_.ended(), &Conversation::answered,
        new Question{this, OwnedObject<GCancellable>(ref(bus_.ended())), key, method, flags, announcements_[key]});
  }

  static void answered(GObject* source, GAsyncResult* result, gpointer data) noexcept {
    const std::unique_ptr<Question> question(static_cast<Question*>(data));
    GError* error = nullptr;
    const OwnedVariant answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error));
    const OwnedError failure(error);
    if (g_cancellable_is_cancelled(question->ended.get()) != FALSE) return;
    question->asker->take(*question, answer.get(), failure.get());
  }

  void take(const Question& question, GVariant* answer, const GError* failure) {
    --open_;
    const bool isNewMethod = std::string_view(question.method) == "ReadOne";
    if (isNewMethod && g_error_matches(failure, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) != FALSE) {
      ask(question.key, "Read", question.flags);
      return;
    }
    // A portal with several threads may announce a change and send the older value afterwards.
    if (answer != nullptr && question.announcements == announcements_[question.key]) {
      const OwnedVariant value(g_variant_get_child_value(answer, 0));
      keep(question.key, value.get());
    }
    // Both values are reported together, so that boards are drawn once. If one is late, the other is reported without
    // it.
    if (open_ == 0) return tell();
    constexpr guint moment = 50;  // milliseconds
    if (answer != nullptr && telling_ == 0) telling_ = g_timeout_add(moment, &Conversation::tellNow, this);
  }

  static gboolean tellNow(gpointer self) noexcept {
    auto& conversation = *static_cast<Conversation*>(self);
    conversation.telling_ = 0;
    conversation.tell();
    return G_SOURCE_REMOVE;
  }

  static void settingChanged(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                             const char* /*interface*/, const char* /*signal*/, GVariant* arguments,
                             gpointer self) noexcept {
    if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(ssv)")) == FALSE) return;
    const char* key = nullptr;
    GVariant* value = nullptr;
    g_variant_get(arguments, "(&s&s@v)", nullptr, &key, &value);
    const OwnedVariant owned(value);
    auto& conversation = *static_cast<Conversation*>(self);
    ++conversation.announcements_[key];
    conversation.keep(key, value);
    conversation.tell();
  }

  /// Asks a portal that has started late or again. It runs already, so the bus has nothing to start.
  static void ownerChanged(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                           const char* /*interface*/, const char* /*signal*/, GVariant* arguments,
                           gpointer self) noexcept {
    if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(sss)")) == FALSE) return;
    const char* owner = nullptr;
    g_variant_get(arguments, "(&s&s&s)", nullptr, nullptr, &owner);
    if (*owner != '\0') static_cast<Conversation*>(self)->askForBoth(G_DBUS_CALL_FLAGS_NO_AUTO_START);
  }

  void keep(std::string_view key, GVariant* value) {
    if (key == schemeKey) now_.scheme = schemeFromPortal(value);
    if (key == accentKey) now_.accent = accentFromPortal(value);
  }

  void tell() {
    if (telling_ != 0) g_source_remove(std::exchange(telling_, 0));
    if (now_ == told_) return;
    told_ = now_;
    changed_(now_);
  }

  std::function<void(const DesktopAppearance&)> changed_;
  PrivateBus bus_;
  std::map<std::string, int, std::less<>> announcements_;  ///< number of announced changes, by key
  int open_ = 0;                                           ///< questions that are not answered yet
  guint telling_ = 0;                                      ///< the timer that reports the values known so far
  DesktopAppearance now_;
  DesktopAppearance told_;
};

AppearancePortal::AppearancePortal(const std::string& busAddress, std::function<void(const DesktopAppearance&)> changed)
    : conversation_(std::make_unique<Conversation>(busAddress, std::move(changed))) {}

AppearancePortal::~AppearancePortal() = default;

}  // namespace desktop
