#include "support/displays/x_monitors.hpp"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include "support/tool.hpp"
#include "support/waiting.hpp"

namespace support {
namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
  if (reply == nullptr) throw std::runtime_error("the X server does not answer about monitors");
  return {reply, &std::free};
}

}  // namespace

XMonitors::XMonitors(const XConnection& connection, std::string display, std::string logFile)
    : connection_(connection), display_(std::move(display)), logFile_(std::move(logFile)) {
  // The server knows monitors only to clients that have said how new they are.
  owned(xcb_randr_query_version_reply(connection.raw(), xcb_randr_query_version(connection.raw(), 1, 5), nullptr));
}

std::vector<XMonitor> XMonitors::all() const {
  auto* const connection = connection_.raw();
  const auto reply = owned(
      xcb_randr_get_monitors_reply(connection, xcb_randr_get_monitors(connection, connection_.root(), 1), nullptr));
  std::vector<XMonitor> monitors;
  for (auto each = xcb_randr_get_monitors_monitors_iterator(reply.get()); each.rem > 0;
       xcb_randr_monitor_info_next(&each)) {
    monitors.push_back({connection_.nameOf(each.data->name),
                        {each.data->x, each.data->y, each.data->width, each.data->height},
                        each.data->primary != 0});
  }
  return monitors;
}

// The library's own request for a new monitor closes the connection, hence the program.
void XMonitors::run(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"-display", display_});
  runTool("xrandr", "x11-xserver-utils", std::move(arguments), logFile_);
}

void XMonitors::add(const XMonitor& monitor) {
  // The output belongs to the server's own monitor until the first virtual one takes it.
  bool outputTaken = false;
  for (const auto& each : all()) outputTaken = outputTaken || (each.name != "screen" && each.name != monitor.name);
  const auto length = [](int pixels) { return std::to_string(pixels) + "/" + std::to_string(pixels * 254 / 960); };
  const auto& area = monitor.area;
  run({"--setmonitor", (monitor.primary ? "*" : "") + monitor.name,
       length(area.width) + "x" + length(area.height) + "+" + std::to_string(area.x) + "+" + std::to_string(area.y),
       outputTaken ? "none" : "screen"});
  waitUntil("the monitor " + monitor.name + " is there", [&] {
    const auto now = all();
    return std::find(now.begin(), now.end(), monitor) != now.end();
  });
}

void XMonitors::remove(const std::string& name) {
  run({"--delmonitor", name});
  waitUntil("the monitor " + name + " is gone", [&] {
    const auto now = all();
    return std::none_of(now.begin(), now.end(), [&](const XMonitor& each) { return each.name == name; });
  });
}

}  // namespace support
