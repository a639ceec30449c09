#include "support/displays/x_input.hpp"

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include "support/displays/steps.hpp"

namespace support {

void XInput::send(std::uint8_t type, std::uint8_t detail, ScreenPoint point) {
  auto* const connection = connection_.raw();
  xcb_test_fake_input(connection, type, detail, XCB_CURRENT_TIME, connection_.root(),
                      static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
  // Returns when the server has dealt with it.
  std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

void XInput::moveTo(ScreenPoint point) { send(XCB_MOTION_NOTIFY, 0, point); }
void XInput::press(MouseButton button) { send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button)); }
void XInput::release(MouseButton button) { send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button)); }

void XInput::click(ScreenPoint point, MouseButton button) {
  moveTo(point);
  press(button);
  release(button);
}

void XInput::drag(ScreenPoint from, ScreenPoint to, MouseButton button) {
  moveTo(from);
  press(button);
  moveInSteps(*this, from, to);
  poll(nullptr, 0, pauseOfAHand);
  release(button);
}

std::uint8_t XInput::codeOf(std::uint32_t keysym) const {
  auto* const connection = connection_.raw();
  const auto* const setup = xcb_get_setup(connection);
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const auto cookie = xcb_get_keyboard_mapping(connection, setup->min_keycode, count);
  const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> mapping(
      xcb_get_keyboard_mapping_reply(connection, cookie, nullptr), &std::free);
  if (!mapping) throw std::runtime_error("the X server has gone");
  const auto* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
  for (int code = 0; code < count; ++code) {
    // Only what the key gives by itself: with a modifier it is for the test to hold it.
    if (keysyms[code * mapping->keysyms_per_keycode] == keysym) {
      return static_cast<std::uint8_t>(setup->min_keycode + code);
    }
  }
  throw std::runtime_error("the keyboard has no key for keysym " + std::to_string(keysym));
}

void XInput::hold(std::uint32_t keysym) { send(XCB_KEY_PRESS, codeOf(keysym)); }
void XInput::letGo(std::uint32_t keysym) { send(XCB_KEY_RELEASE, codeOf(keysym)); }

void XInput::key(std::uint32_t keysym, const std::vector<std::uint32_t>& modifiers) {
  const auto code = codeOf(keysym);
  for (const auto modifier : modifiers) send(XCB_KEY_PRESS, codeOf(modifier));
  send(XCB_KEY_PRESS, code);
  send(XCB_KEY_RELEASE, code);
  for (const auto modifier : modifiers) send(XCB_KEY_RELEASE, codeOf(modifier));
}

}  // namespace support
