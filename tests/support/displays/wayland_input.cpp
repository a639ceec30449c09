#include "support/displays/wayland_input.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <linux/input-event-codes.h>
#include <poll.h>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include "base/descriptors/file_descriptor.hpp"
#include "support/displays/steps.hpp"

namespace support {
namespace {

// The two protocols, of which Debian 12 packages no description, as far as they are used here; requests in the order of
// their numbers.
namespace pointer {
enum Request : std::uint32_t { motion, motionAbsolute, button, axis, frame };
const wl_interface* noTypes[5] = {};
const wl_message requests[] = {{"motion", "uff", noTypes},
                               {"motion_absolute", "uuuuu", noTypes},
                               {"button", "uuu", noTypes},
                               {"axis", "uuf", noTypes},
                               {"frame", "", noTypes}};
const wl_interface device{"zwlr_virtual_pointer_v1", 1, 5, requests, 0, nullptr};
const wl_interface* createTypes[] = {&wl_seat_interface, &device};
const wl_message managerRequests[] = {{"create_virtual_pointer", "?on", createTypes}};
const wl_interface manager{"zwlr_virtual_pointer_manager_v1", 1, 1, managerRequests, 0, nullptr};
}  // namespace pointer

namespace keyboard {
enum Request : std::uint32_t { keymap, key, modifiers };
const wl_interface* noTypes[4] = {};
const wl_message requests[] = {{"keymap", "uhu", noTypes}, {"key", "uuu", noTypes}, {"modifiers", "uuuu", noTypes}};
const wl_interface device{"zwp_virtual_keyboard_v1", 1, 3, requests, 0, nullptr};
const wl_interface* createTypes[] = {&wl_seat_interface, &device};
const wl_message managerRequests[] = {{"create_virtual_keyboard", "on", createTypes}};
const wl_interface manager{"zwp_virtual_keyboard_manager_v1", 1, 1, managerRequests, 0, nullptr};
}  // namespace keyboard

constexpr xkb_keycode_t evdevOffset = 8;  // of a keymap's codes to the kernel's

std::uint32_t now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<std::uint32_t>(time.tv_sec * 1000 + time.tv_nsec / 1'000'000);
}

wl_proxy* proxy(void* object) { return static_cast<wl_proxy*>(object); }

struct Globals {
  wl_proxy* seat = nullptr;
  wl_proxy* pointers = nullptr;
  wl_proxy* keyboards = nullptr;
};

void announced(void* data, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t) {
  auto& globals = *static_cast<Globals*>(data);
  const auto bind = [&](wl_proxy*& target, const wl_interface& wanted) {
    if (target == nullptr && std::strcmp(interface, wanted.name) == 0) {
      target = proxy(wl_registry_bind(registry, name, &wanted, 1));
    }
  };
  bind(globals.seat, wl_seat_interface);
  bind(globals.pointers, pointer::manager);
  bind(globals.keyboards, keyboard::manager);
}
void withdrawn(void*, wl_registry*, std::uint32_t) {}
constexpr wl_registry_listener registryListener{announced, withdrawn};

wl_proxy* make(wl_proxy* manager, const wl_interface& device, wl_proxy* seat) {
  return wl_proxy_marshal_flags(manager, 0, &device, 1, 0, seat, nullptr);
}

template <typename... Arguments>
void request(wl_proxy* device, std::uint32_t number, Arguments... arguments) {
  wl_proxy_marshal_flags(device, number, nullptr, 1, 0, arguments...);
}

}  // namespace

struct WaylandInput::Devices {
  wl_display* display = nullptr;
  wl_registry* registry = nullptr;
  Globals globals;
  wl_proxy* pointer = nullptr;
  wl_proxy* keyboard = nullptr;
  xkb_context* context = nullptr;
  xkb_keymap* keymap = nullptr;
  xkb_state* state = nullptr;

  Devices() = default;
  Devices(const Devices&) = delete;
  Devices& operator=(const Devices&) = delete;
  ~Devices() {
    for (auto* const each : {pointer, keyboard, globals.seat, globals.pointers, globals.keyboards}) {
      if (each != nullptr) wl_proxy_destroy(each);
    }
    if (registry != nullptr) wl_registry_destroy(registry);
    if (display != nullptr) wl_display_disconnect(display);
    xkb_state_unref(state);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
  }

  // Returns when the compositor has dealt with all that it was sent.
  void settle() const {
    if (wl_display_roundtrip(display) < 0) throw std::runtime_error("the compositor has gone");
  }

  void giveKeymap() {
    context = xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES);
    const xkb_rule_names american{"evdev", "pc105", "us", nullptr, nullptr};
    keymap = context == nullptr ? nullptr : xkb_keymap_new_from_names(context, &american, XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (keymap == nullptr) throw std::runtime_error("no keyboard layouts: apt-get install xkb-data");
    state = xkb_state_new(keymap);
    const std::unique_ptr<char, decltype(&std::free)> text(xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1),
                                                           &std::free);
    const auto size = static_cast<std::uint32_t>(std::strlen(text.get()) + 1);
    const base::FileDescriptor file(memfd_create("keymap", MFD_CLOEXEC));
    if (write(file.get(), text.get(), size) != static_cast<ssize_t>(size)) throw std::runtime_error("no keymap");
    request(keyboard, keyboard::keymap, std::uint32_t{WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1}, file.get(), size);
    settle();
  }

  void strike(xkb_keycode_t code, bool down) {
    request(keyboard, keyboard::key, now(), std::uint32_t{code - evdevOffset}, std::uint32_t{down ? 1U : 0U});
    xkb_state_update_key(state, code, down ? XKB_KEY_DOWN : XKB_KEY_UP);
    request(keyboard, keyboard::modifiers, std::uint32_t{xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED)},
            std::uint32_t{0}, std::uint32_t{xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED)}, std::uint32_t{0});
    settle();
  }

  xkb_keycode_t codeOf(std::uint32_t keysym) const {
    for (auto code = xkb_keymap_min_keycode(keymap); code <= xkb_keymap_max_keycode(keymap); ++code) {
      const xkb_keysym_t* keysyms = nullptr;
      // Only what the key gives by itself: with a modifier it is for the test to hold it.
      const int count = xkb_keymap_key_get_syms_by_level(keymap, code, 0, 0, &keysyms);
      if (count == 1 && keysyms[0] == keysym) return code;
    }
    throw std::runtime_error("the keyboard has no key for keysym " + std::to_string(keysym));
  }

  void button(MouseButton which, bool down) const {
    constexpr std::array<std::uint32_t, 3> codes{BTN_LEFT, BTN_MIDDLE, BTN_RIGHT};
    request(pointer, pointer::button, now(), codes.at(static_cast<std::size_t>(which) - 1),
            std::uint32_t{down ? 1U : 0U});
    request(pointer, pointer::frame);
    settle();
  }
};

WaylandInput::WaylandInput(const std::string& display) : devices_(std::make_unique<Devices>()) {
  auto& devices = *devices_;
  devices.display = wl_display_connect(display.c_str());
  if (devices.display == nullptr) throw std::runtime_error("cannot connect to the Wayland display " + display);
  devices.registry = wl_display_get_registry(devices.display);
  wl_registry_add_listener(devices.registry, &registryListener, &devices.globals);
  devices.settle();
  const auto& globals = devices.globals;
  if (globals.seat == nullptr || globals.pointers == nullptr || globals.keyboards == nullptr) {
    throw std::runtime_error("the compositor has no virtual pointer or keyboard");
  }
  devices.pointer = make(globals.pointers, pointer::device, globals.seat);
  devices.keyboard = make(globals.keyboards, keyboard::device, globals.seat);
  devices.giveKeymap();
}

WaylandInput::WaylandInput(WaylandInput&&) noexcept = default;
WaylandInput::~WaylandInput() = default;

void WaylandInput::setLayout(ScreenArea layout) { layout_ = layout; }

void WaylandInput::moveTo(ScreenPoint point) {
  // As hundredths of the layout's units, and in the middle of one: a whole number of units would be rounded either way.
  const auto hundredths = [](int units) { return static_cast<std::uint32_t>(units * 100); };
  request(devices_->pointer, pointer::motionAbsolute, now(), hundredths(point.x - layout_.x) + 50,
          hundredths(point.y - layout_.y) + 50, hundredths(layout_.width), hundredths(layout_.height));
  request(devices_->pointer, pointer::frame);
  devices_->settle();
}

void WaylandInput::press(MouseButton button) { devices_->button(button, true); }
void WaylandInput::release(MouseButton button) { devices_->button(button, false); }

void WaylandInput::click(ScreenPoint point, MouseButton button) {
  moveTo(point);
  press(button);
  release(button);
}

void WaylandInput::drag(ScreenPoint from, ScreenPoint to, MouseButton button) {
  moveTo(from);
  press(button);
  moveInSteps(*this, from, to);
  poll(nullptr, 0, pauseOfAHand);
  release(button);
}

void WaylandInput::key(std::uint32_t keysym, const std::vector<std::uint32_t>& modifiers) {
  const auto code = devices_->codeOf(keysym);
  for (const auto modifier : modifiers) devices_->strike(devices_->codeOf(modifier), true);
  devices_->strike(code, true);
  devices_->strike(code, false);
  for (const auto modifier : modifiers) devices_->strike(devices_->codeOf(modifier), false);
}

}  // namespace support
