#include "support/displays/stand_in_portal.hpp"

#include <cstring>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "support/waiting.hpp"

using support::AccentColour;
using support::ColourScheme;
using support::StandInPortal;

namespace {

constexpr const char* appearance = "org.freedesktop.appearance";

/// A client that reads values as GLib prints them, and counts signals.
class Client {
 public:
  explicit Client(const support::SessionBus& bus) : connection_(bus.connect()) {
    sd_bus_match_signal(connection_.get(), nullptr, nullptr, "/org/freedesktop/portal/desktop",
                        "org.freedesktop.portal.Settings", "SettingChanged", &Client::changed, this);
  }

  /// "u 1", "vu 1" with a second wrapping, "(ddd) 0.5 0.25 1", or the error's name.
  std::string read(const char* method, const char* key) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(connection_.get(), "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                           "org.freedesktop.portal.Settings", method, &error, &reply, "ss", appearance, key);
    std::string text = result < 0 ? error.name : value(reply);
    sd_bus_message_unref(reply);
    sd_bus_error_free(&error);
    return text;
  }

  std::vector<std::string> signalsAfter(std::size_t count) {
    support::eventually([&] {
      while (sd_bus_process(connection_.get(), nullptr) > 0) {
      }
      return signals_.size() >= count;
    });
    return signals_;
  }

 private:
  static std::string value(sd_bus_message* message) {
    const char* contents = nullptr;
    sd_bus_message_peek_type(message, nullptr, &contents);
    const std::string kind = contents == nullptr ? "" : contents;
    if (kind == "v") {
      sd_bus_message_enter_container(message, 'v', "v");
      return "v" + value(message);
    }
    if (kind == "u") {
      std::uint32_t number = 0;
      sd_bus_message_read(message, "v", "u", &number);
      return "u " + std::to_string(number);
    }
    AccentColour colour{};
    sd_bus_message_read(message, "v", "(ddd)", &colour[0], &colour[1], &colour[2]);
    char text[64];
    std::snprintf(text, sizeof text, "(ddd) %g %g %g", colour[0], colour[1], colour[2]);
    return text;
  }

  static int changed(sd_bus_message* signal, void* self, sd_bus_error*) {
    const char* space = "";
    const char* key = "";
    sd_bus_message_read(signal, "ss", &space, &key);
    static_cast<Client*>(self)->signals_.push_back(std::string(key) + " " + value(signal));
    return 0;
  }

  support::BusConnection connection_;
  std::vector<std::string> signals_;
};

constexpr StandInPortal::Appearance darkAndBlue{ColourScheme::dark, AccentColour{0.5, 0.25, 1}};

TEST(StandInPortal, AnswersInTheFormAskedOfIt) {
  const support::SessionBus bus;
  Client client(bus);
  {
    const StandInPortal portal(bus, {.appearance = darkAndBlue});
    EXPECT_EQ(client.read("Read", "color-scheme"), "vu 1");
    EXPECT_EQ(client.read("ReadOne", "color-scheme"), "u 1");
    EXPECT_EQ(client.read("Read", "accent-color"), "v(ddd) 0.5 0.25 1");
    EXPECT_EQ(client.read("ReadOne", "contrast"), "org.freedesktop.portal.Error.NotFound");
    EXPECT_EQ(portal.reads(), 4);
  }
  const StandInPortal portal(bus, {.appearance = {.colourScheme = ColourScheme::light},
                                   .read = StandInPortal::ReadForm::plain,
                                   .readOne = StandInPortal::ReadOneMethod::missing});
  EXPECT_EQ(client.read("Read", "color-scheme"), "u 2");
  EXPECT_EQ(client.read("ReadOne", "color-scheme"), "org.freedesktop.DBus.Error.UnknownMethod");
  EXPECT_EQ(client.read("Read", "accent-color"), "org.freedesktop.portal.Error.NotFound");
}

TEST(StandInPortal, AnnouncesWhatChangedAndAnswersByIt) {
  const support::SessionBus bus;
  Client client(bus);
  StandInPortal portal(bus, {.appearance = darkAndBlue});
  portal.change({ColourScheme::light, darkAndBlue.accentColour});
  EXPECT_THAT(client.signalsAfter(1), testing::ElementsAre("color-scheme u 2"));
  EXPECT_EQ(client.read("ReadOne", "color-scheme"), "u 2");
  portal.change({ColourScheme::light, AccentColour{1, 0, 0}});
  EXPECT_THAT(client.signalsAfter(2), testing::ElementsAre("color-scheme u 2", "accent-color (ddd) 1 0 0"));
}

}  // namespace
