#include "support/displays/x_connection.hpp"

#include <cstring>
#include <functional>
#include <stdexcept>

#include <xcb/xcb.h>

#include "support/environment.hpp"

namespace support {
namespace {

// Errors are only that something is gone, which the empty answer says.
template <typename Cookie, typename Reply>
XOwned<Reply> answer(xcb_connection_t* connection, Cookie cookie,
                     Reply* (*fetch)(xcb_connection_t*, Cookie, xcb_generic_error_t**)) {
  xcb_generic_error_t* error = nullptr;
  XOwned<Reply> reply(fetch(connection, cookie, &error));
  const XOwned<xcb_generic_error_t> owned(error);
  if (xcb_connection_has_error(connection) != 0) throw std::runtime_error("the X server has gone");
  return reply;
}

}  // namespace

void XConnection::Closer::operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }

XConnection::XConnection(const std::string& display, const std::string& authorityFile) {
  ScopedEnvironment environment;  // the library looks for cookies nowhere else
  environment.set("XAUTHORITY", authorityFile.empty() ? "/dev/null" : authorityFile);
  connection_.reset(xcb_connect(display.c_str(), nullptr));
  if (xcb_connection_has_error(connection_.get()) != 0) {
    throw std::runtime_error("cannot connect to the X display " + display);
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
}

XAtom XConnection::atom(const std::string& name) const {
  const auto reply = answer(raw(), xcb_intern_atom(raw(), 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
                            xcb_intern_atom_reply);
  return reply ? reply->atom : XAtom{};
}

std::string XConnection::nameOf(XAtom atom) const {
  const auto reply = answer(raw(), xcb_get_atom_name(raw(), atom), xcb_get_atom_name_reply);
  if (!reply) return {};
  return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

std::string XConnection::bytes(XWindow window, const std::string& property) const {
  constexpr std::uint32_t words = 1 << 20;
  const auto cookie = xcb_get_property(raw(), 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, words);
  const auto reply = answer(raw(), cookie, xcb_get_property_reply);
  if (!reply) return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::string XConnection::text(XWindow window, const std::string& property) const { return bytes(window, property); }

std::vector<std::uint32_t> XConnection::numbers(XWindow window, const std::string& property) const {
  const auto value = bytes(window, property);
  std::vector<std::uint32_t> result(value.size() / sizeof(std::uint32_t));
  if (!result.empty()) std::memcpy(result.data(), value.data(), result.size() * sizeof(std::uint32_t));
  return result;
}

std::vector<std::string> XConnection::atoms(XWindow window, const std::string& property) const {
  std::vector<std::string> names;
  for (const auto each : numbers(window, property)) names.push_back(nameOf(each));
  return names;
}

std::string XConnection::title(XWindow window) const { return text(window, "_NET_WM_NAME"); }

bool XConnection::hasWindowManager() const {
  const auto check = numbers(root_, "_NET_SUPPORTING_WM_CHECK");
  return !check.empty() && numbers(check[0], "_NET_SUPPORTING_WM_CHECK") == check;
}

bool XConnection::hasCompositor() const {
  const auto reply =
      answer(raw(), xcb_get_selection_owner(raw(), atom("_NET_WM_CM_S0")), xcb_get_selection_owner_reply);
  return reply && reply->owner != XCB_WINDOW_NONE;
}

std::vector<XWindow> XConnection::stacking() const { return numbers(root_, "_NET_CLIENT_LIST_STACKING"); }

bool XConnection::isShown(XWindow window) const {
  const auto reply = answer(raw(), xcb_get_window_attributes(raw(), window), xcb_get_window_attributes_reply);
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<XWindow> XConnection::windowsOf(pid_t process) const {
  std::vector<XWindow> found;
  // A window manager's frame is one or two levels above the client's window.
  const std::function<void(XWindow, int)> visit = [&](XWindow parent, int depth) {
    const auto tree = answer(raw(), xcb_query_tree(raw(), parent), xcb_query_tree_reply);
    if (!tree) return;
    const auto* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      const auto owner = numbers(children[i], "_NET_WM_PID");
      if (!owner.empty() && owner[0] == static_cast<std::uint32_t>(process)) {
        if (isShown(children[i])) found.push_back(children[i]);
      } else if (depth > 1) {
        visit(children[i], depth - 1);
      }
    }
  };
  visit(root_, 3);
  return found;
}

std::vector<XWindow> XConnection::topWindows() const {
  const auto tree = answer(raw(), xcb_query_tree(raw(), root_), xcb_query_tree_reply);
  if (!tree) return {};
  const auto* children = xcb_query_tree_children(tree.get());
  return {children, children + xcb_query_tree_children_length(tree.get())};
}

void XConnection::close(XWindow window) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atom("WM_PROTOCOLS");
  message.data.data32[0] = atom("WM_DELETE_WINDOW");
  xcb_send_event(raw(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
  xcb_flush(raw());
}

void XConnection::move(XWindow window, int x, int y) const {
  const std::uint32_t values[] = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)};
  xcb_configure_window(raw(), window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
  xcb_flush(raw());
}

void XConnection::showDesktop(bool shown) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = root_;
  message.type = atom("_NET_SHOWING_DESKTOP");
  message.data.data32[0] = shown ? 1 : 0;
  constexpr std::uint32_t toManager = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_send_event(raw(), 0, root_, toManager, reinterpret_cast<const char*>(&message));
  xcb_flush(raw());
}

std::optional<ScreenArea> XConnection::areaOf(XWindow window) const {
  const auto size = answer(raw(), xcb_get_geometry(raw(), window), xcb_get_geometry_reply);
  if (!size) return std::nullopt;
  const auto place =
      answer(raw(), xcb_translate_coordinates(raw(), window, root_, 0, 0), xcb_translate_coordinates_reply);
  if (!place) return std::nullopt;
  return ScreenArea{place->dst_x, place->dst_y, size->width, size->height};
}

ScreenPoint XConnection::pointer() const {
  const auto reply = answer(raw(), xcb_query_pointer(raw(), root_), xcb_query_pointer_reply);
  return reply ? ScreenPoint{reply->root_x, reply->root_y} : ScreenPoint{};
}

Bitmap XConnection::pictureOf(XWindow window) const {
  const auto size = answer(raw(), xcb_get_geometry(raw(), window), xcb_get_geometry_reply);
  if (!size) return {};
  const auto image =
      answer(raw(), xcb_get_image(raw(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, size->width, size->height, ~0U),
             xcb_get_image_reply);
  if (!image) return {};
  Bitmap bitmap{size->width, size->height, std::vector<Pixel>(std::size_t{size->width} * size->height)};
  const auto* data = xcb_get_image_data(image.get());
  // Depths 24 and 32 of a server on this machine: blue, green, red, opacity or nothing.
  if (static_cast<std::size_t>(xcb_get_image_data_length(image.get())) != bitmap.pixels.size() * 4) {
    throw std::runtime_error("the X server's pixels are not of 32 bits");
  }
  for (auto& pixel : bitmap.pixels) {
    pixel = {data[2], data[1], data[0], image->depth == 32 ? data[3] : std::uint8_t{255}};
    data += 4;
  }
  return bitmap;
}

}  // namespace support
