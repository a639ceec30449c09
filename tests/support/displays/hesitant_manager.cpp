#include "support/displays/hesitant_manager.hpp"

#include <stdexcept>
#include <vector>

#include <xcb/xcb.h>

namespace support {
namespace {

/// As it was asked for.
void configure(xcb_connection_t* connection, const xcb_configure_request_event_t& request) {
  std::vector<std::uint32_t> values;
  const auto add = [&](std::uint16_t bit, std::uint32_t value) {
    if ((request.value_mask & bit) != 0) values.push_back(value);
  };
  add(XCB_CONFIG_WINDOW_X, static_cast<std::uint32_t>(request.x));
  add(XCB_CONFIG_WINDOW_Y, static_cast<std::uint32_t>(request.y));
  add(XCB_CONFIG_WINDOW_WIDTH, request.width);
  add(XCB_CONFIG_WINDOW_HEIGHT, request.height);
  constexpr std::uint16_t geometry =
      XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
  xcb_configure_window(connection, request.window, request.value_mask & geometry, values.data());
}

}  // namespace

HesitantManager::HesitantManager(const std::string& display) : connection_(display) {
  const std::uint32_t redirected = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
  const auto cookie =
      xcb_change_window_attributes_checked(connection_.raw(), connection_.root(), XCB_CW_EVENT_MASK, &redirected);
  const XOwned<xcb_generic_error_t> error(xcb_request_check(connection_.raw(), cookie));
  if (error) throw std::runtime_error("the display has a window manager");
}

void HesitantManager::handleRequests() {
  while (const XOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection_.raw())}) {
    constexpr int sentByClients = 0x80;
    switch (event->response_type & ~sentByClients) {
      case XCB_CONFIGURE_REQUEST:
        configure(connection_.raw(), *reinterpret_cast<const xcb_configure_request_event_t*>(event.get()));
        break;
      case XCB_MAP_REQUEST: {
        const auto window = reinterpret_cast<const xcb_map_request_event_t*>(event.get())->window;
        if (++asked_[window] == 2) xcb_map_window(connection_.raw(), window);
        break;
      }
      default:
        break;
    }
  }
  xcb_flush(connection_.raw());
}

}  // namespace support
