#include "support/displays/mutter_input.hpp"

#include <array>
#include <stdexcept>

#include <linux/input-event-codes.h>
#include <poll.h>
#include <systemd/sd-bus.h>

#include "support/displays/steps.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

constexpr const char* service = "org.gnome.Mutter.RemoteDesktop";
constexpr const char* servicePath = "/org/gnome/Mutter/RemoteDesktop";
constexpr const char* sessionInterface = "org.gnome.Mutter.RemoteDesktop.Session";

constexpr std::uint32_t leftShift = 0xffe1;

template <typename... Arguments>
BusMessage call(sd_bus* bus, const char* path, const char* interface, const char* member, const char* types,
                Arguments... arguments) {
  sd_bus_error error = SD_BUS_ERROR_NULL;
  sd_bus_message* reply = nullptr;
  const int result = sd_bus_call_method(bus, service, path, interface, member, &error, &reply, types, arguments...);
  const std::string reason = result < 0 && error.message != nullptr ? error.message : "";
  sd_bus_error_free(&error);
  if (result < 0) throw std::runtime_error(std::string("mutter's ") + member + ": " + reason);
  return BusMessage(reply);
}

}  // namespace

MutterInput::MutterInput(const SessionBus& bus, const XConnection& windows)
    : windows_(windows), connection_(bus.connect()) {
  const auto reply = call(connection_.get(), servicePath, service, "CreateSession", "");
  const char* path = "";
  if (sd_bus_message_read(reply.get(), "o", &path) < 0) throw std::runtime_error("mutter gives no session");
  session_ = path;
  call(connection_.get(), session_.c_str(), sessionInterface, "Start", "");
  // The seat has a mouse and a keyboard from the first use of each, and clients need a while to take them up.
  moveTo({0, 0});
  key(leftShift);
}

void MutterInput::moveBy(double right, double down) {
  call(connection_.get(), session_.c_str(), sessionInterface, "NotifyPointerMotionRelative", "dd", right, down);
}

void MutterInput::button(MouseButton which, bool down) {
  constexpr std::array<int, 3> codes{BTN_LEFT, BTN_MIDDLE, BTN_RIGHT};
  call(connection_.get(), session_.c_str(), sessionInterface, "NotifyPointerButton", "ib",
       codes.at(static_cast<std::size_t>(which) - 1), static_cast<int>(down));
}

void MutterInput::strike(std::uint32_t keysym, bool down) {
  call(connection_.get(), session_.c_str(), sessionInterface, "NotifyKeyboardKeysym", "ub", keysym,
       static_cast<int>(down));
}

void MutterInput::moveTo(ScreenPoint point) {
  // Places are for sessions that share the screen; without one there are only ways, and a corner to begin at. The
  // tenth keeps what is computed in fractions from ending a pixel short.
  moveBy(-100'000, -100'000);
  moveBy(point.x + 0.1, point.y + 0.1);
  last_ = point;
}

void MutterInput::press(MouseButton which) {
  // mutter handles a motion later than the call that asks for it.
  waitUntil("the pointer is where it was moved to", [this] { return windows_.pointer() == last_; });
  button(which, true);
}
void MutterInput::release(MouseButton which) { button(which, false); }

void MutterInput::click(ScreenPoint point, MouseButton which) {
  moveTo(point);
  press(which);
  release(which);
}

void MutterInput::drag(ScreenPoint from, ScreenPoint to, MouseButton which) {
  moveTo(from);
  press(which);
  for (const auto& point : stepsBetween(from, to)) {
    poll(nullptr, 0, pauseOfAHand);
    moveBy(point.x - last_.x, point.y - last_.y);
    last_ = point;
  }
  poll(nullptr, 0, pauseOfAHand);
  release(which);
}

void MutterInput::key(std::uint32_t keysym, const std::vector<std::uint32_t>& modifiers) {
  for (const auto modifier : modifiers) strike(modifier, true);
  strike(keysym, true);
  strike(keysym, false);
  for (const auto modifier : modifiers) strike(modifier, false);
}

}  // namespace support
