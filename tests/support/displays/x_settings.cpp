#include "support/displays/x_settings.hpp"

#include <cstring>
#include <stdexcept>
#include <string>

#include <xcb/xcb.h>

namespace support {
namespace {

template <typename Number>
void append(std::string& bytes, Number number) {
  char raw[sizeof number];
  std::memcpy(raw, &number, sizeof number);
  bytes.append(raw, sizeof number);
}

/// The property's value: in the machine's byte order, one setting of the type integer.
std::string settingsWith(std::uint32_t serial, const std::string& name, std::int32_t value) {
  std::string bytes;
  const std::uint16_t probe = 1;
  std::uint8_t littleEndian = 0;
  std::memcpy(&littleEndian, &probe, 1);
  append(bytes, static_cast<std::uint8_t>(littleEndian == 1 ? 0 : 1));  // LSBFirst, MSBFirst
  bytes.append(3, '\0');
  append(bytes, serial);
  append(bytes, std::uint32_t{1});  // settings
  append(bytes, std::uint8_t{0});   // integer
  bytes.append(1, '\0');
  append(bytes, static_cast<std::uint16_t>(name.size()));
  bytes += name;
  bytes.append((4 - name.size() % 4) % 4, '\0');
  append(bytes, serial);
  append(bytes, value);
  return bytes;
}

}  // namespace

XSettings::XSettings(const std::string& display) : connection_(display), window_(xcb_generate_id(connection_.raw())) {
  auto* const raw = connection_.raw();
  xcb_create_window(raw, XCB_COPY_FROM_PARENT, window_, connection_.root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  setResolution(96);
  const auto selection = connection_.atom("_XSETTINGS_S0");
  xcb_set_selection_owner(raw, window_, selection, XCB_CURRENT_TIME);
  xcb_client_message_event_t announcement{};
  announcement.response_type = XCB_CLIENT_MESSAGE;
  announcement.format = 32;
  announcement.window = connection_.root();
  announcement.type = connection_.atom("MANAGER");
  announcement.data.data32[1] = selection;
  announcement.data.data32[2] = window_;
  xcb_send_event(raw, 0, connection_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                 reinterpret_cast<const char*>(&announcement));
  xcb_flush(raw);
}

XSettings::~XSettings() {
  xcb_destroy_window(connection_.raw(), window_);
  xcb_flush(connection_.raw());
}

void XSettings::setResolution(int dotsPerInch) {
  constexpr int units = 1024;
  const auto bytes = settingsWith(++serial_, "Xft/DPI", dotsPerInch * units);
  const auto property = connection_.atom("_XSETTINGS_SETTINGS");
  xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, window_, property, property, 8,
                      static_cast<std::uint32_t>(bytes.size()), bytes.data());
  xcb_flush(connection_.raw());
}

}  // namespace support
