#include "support/displays/stand_in_portal.hpp"

#include <atomic>
#include <cerrno>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/eventfd.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"

namespace support {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* nameSpace = "org.freedesktop.appearance";
constexpr const char* colourSchemeKey = "color-scheme";
constexpr const char* accentColourKey = "accent-color";

int appendValue(sd_bus_message* message, ColourScheme scheme) {
  return sd_bus_message_append(message, "v", "u", static_cast<std::uint32_t>(scheme));
}
int appendValue(sd_bus_message* message, const AccentColour& colour) {
  return sd_bus_message_append(message, "v", "(ddd)", colour[0], colour[1], colour[2]);
}

}  // namespace

class StandInPortal::Server {
 public:
  Server(const SessionBus& bus, const Settings& settings)
      : settings_(settings), connection_(bus.connect()), wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    auto* const raw = connection_.get();
    check(sd_bus_add_object(raw, nullptr, portalPath, &Server::called, this), "offering the portal");
    check(sd_bus_request_name(raw, portalName, 0), "taking the portal's name");
    thread_ = std::jthread([this](const std::stop_token& stop) { serve(stop); });
  }
  ~Server() {
    thread_.request_stop();
    wake();
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  int reads() const { return reads_; }

  void change(const Appearance& appearance) {
    const std::lock_guard lock(mutex_);
    auto& now = settings_.appearance;
    const auto schemeChanged = appearance.colourScheme && appearance.colourScheme != now.colourScheme;
    const auto accentChanged = appearance.accentColour && appearance.accentColour != now.accentColour;
    now = appearance;
    if (schemeChanged) announce(colourSchemeKey, *now.colourScheme);
    if (accentChanged) announce(accentColourKey, *now.accentColour);
    check(sd_bus_flush(connection_.get()), "announcing a setting");
  }

  void speak(const std::optional<Appearance>& past) {
    const std::lock_guard lock(mutex_);
    settings_.silentAbout.clear();
    const auto now = settings_.appearance;
    settings_.appearance = past.value_or(now);
    for (const auto& [call, form] : std::exchange(waiting_, {})) {
      check(sd_bus_message_rewind(call.get(), 1), "reading a question again");
      sd_bus_error error = SD_BUS_ERROR_NULL;
      const int result = answerRead(call.get(), &error, form);
      if (result < 0) sd_bus_reply_method_error(call.get(), &error);
      sd_bus_error_free(&error);
    }
    settings_.appearance = now;
    check(sd_bus_flush(connection_.get()), "answering at last");
  }

 private:
  template <typename Value>
  void announce(const char* key, const Value& value) {
    sd_bus_message* signal = nullptr;
    check(sd_bus_message_new_signal(connection_.get(), &signal, portalPath, settingsInterface, "SettingChanged"), key);
    int result = sd_bus_message_append(signal, "ss", nameSpace, key);
    if (result >= 0) result = appendValue(signal, value);
    if (result >= 0) result = sd_bus_send(connection_.get(), signal, nullptr);
    sd_bus_message_unref(signal);
    check(result, key);
  }

  // The connection is used under the mutex alone, and nobody waits while holding it.
  void serve(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      pollfd polled[2]{{-1, POLLIN, 0}, {wake_.get(), POLLIN, 0}};
      {
        const std::lock_guard lock(mutex_);
        int result = 1;
        while (result > 0) result = sd_bus_process(connection_.get(), nullptr);
        if (result < 0) return;
        polled[0].fd = sd_bus_get_fd(connection_.get());
      }
      poll(polled, 2, -1);
    }
  }

  void wake() const {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wake_.get(), &one, sizeof one);
  }

  static int called(sd_bus_message* call, void* self, sd_bus_error* error) {
    return static_cast<Server*>(self)->answer(call, error);
  }

  int answer(sd_bus_message* call, sd_bus_error* error) {
    const auto is = [call](const char* member) {
      return sd_bus_message_is_method_call(call, settingsInterface, member);
    };
    if (is("ReadAll") > 0) return readAll(call);
    if (is("Read") > 0) return read(call, error, settings_.read);
    if (is("ReadOne") > 0 && settings_.readOne == ReadOneMethod::present) return read(call, error, ReadForm::plain);
    if (sd_bus_message_is_method_call(call, "org.freedesktop.DBus.Properties", "Get") > 0) {
      return sd_bus_reply_method_return(call, "v", "u", settings_.readOne == ReadOneMethod::present ? 2U : 1U);
    }
    return 0;  // the library answers UnknownMethod
  }

  int read(sd_bus_message* call, sd_bus_error* error, ReadForm form) {
    ++reads_;
    return answerRead(call, error, form);
  }

  int answerRead(sd_bus_message* call, sd_bus_error* error, ReadForm form) {
    const char* space = "";
    const char* key = "";
    if (const int result = sd_bus_message_read(call, "ss", &space, &key); result < 0) return result;
    if (settings_.silentAbout.contains(key)) {
      waiting_.emplace_back(BusMessage(sd_bus_message_ref(call)), form);
      return 1;
    }
    const auto asked = [&](const char* name) {
      return std::string_view(space) == nameSpace && std::string_view(key) == name;
    };
    const auto& now = settings_.appearance;
    if (asked(colourSchemeKey) && now.colourScheme) return give(call, form, *now.colourScheme);
    if (asked(accentColourKey) && now.accentColour) return give(call, form, *now.accentColour);
    return sd_bus_error_set(error, "org.freedesktop.portal.Error.NotFound", "Requested setting not found");
  }

  template <typename Value>
  static int give(sd_bus_message* call, ReadForm form, const Value& value) {
    sd_bus_message* reply = nullptr;
    int result = sd_bus_message_new_method_return(call, &reply);
    const bool twice = form == ReadForm::wrappedTwice;
    if (result >= 0 && twice) result = sd_bus_message_open_container(reply, 'v', "v");
    if (result >= 0) result = appendValue(reply, value);
    if (result >= 0 && twice) result = sd_bus_message_close_container(reply);
    if (result >= 0) result = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return result < 0 ? result : 1;
  }

  int readAll(sd_bus_message* call) {
    ++reads_;
    const auto& now = settings_.appearance;
    sd_bus_message* reply = nullptr;
    int result = sd_bus_message_new_method_return(call, &reply);
    const auto open = [&](char kind, const char* contents) {
      if (result >= 0) result = sd_bus_message_open_container(reply, kind, contents);
    };
    const auto close = [&] {
      if (result >= 0) result = sd_bus_message_close_container(reply);
    };
    const auto append = [&](const char* key, const auto& value) {
      open('e', "sv");
      if (result >= 0) result = sd_bus_message_append(reply, "s", key);
      if (result >= 0) result = appendValue(reply, value);
      close();
    };
    open('a', "{sa{sv}}");
    open('e', "sa{sv}");
    if (result >= 0) result = sd_bus_message_append(reply, "s", nameSpace);
    open('a', "{sv}");
    if (now.colourScheme) append(colourSchemeKey, *now.colourScheme);
    if (now.accentColour) append(accentColourKey, *now.accentColour);
    close();
    close();
    close();
    if (result >= 0) result = sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return result < 0 ? result : 1;
  }

  Settings settings_;
  BusConnection connection_;
  base::FileDescriptor wake_;
  std::vector<std::pair<BusMessage, ReadForm>> waiting_;
  std::mutex mutex_;
  std::atomic<int> reads_ = 0;
  std::jthread thread_;  // last: it ends before what it uses
};

StandInPortal::StandInPortal(const SessionBus& bus, const Settings& settings)
    : server_(std::make_unique<Server>(bus, settings)) {}
StandInPortal::~StandInPortal() = default;
void StandInPortal::change(const Appearance& appearance) { server_->change(appearance); }
void StandInPortal::speak() { server_->speak({}); }
void StandInPortal::speakOf(const Appearance& past) { server_->speak(past); }
int StandInPortal::reads() const { return server_->reads(); }

}  // namespace support
