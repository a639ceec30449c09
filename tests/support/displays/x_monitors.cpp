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

// At sixty pictures a second with blanks of an old monitor; those of a new one are refused by the dummy driver.
std::vector<std::string> timingsOf(int width, int height) {
  const int wholeWidth = width + 200;
  const int wholeHeight = height + 30;
  std::vector<std::string> timings{std::to_string(wholeWidth * wholeHeight * 60 / 1'000'000 + 1)};
  for (const int value : {width, width + 40, width + 120, wholeWidth, height, height + 3, height + 8, wholeHeight}) {
    timings.push_back(std::to_string(value));
  }
  return timings;
}

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

// Clients are told that an output is connected only once somebody has had the server look.
void XMonitors::look() const {
  auto* const connection = connection_.raw();
  owned(xcb_randr_get_screen_resources_reply(connection, xcb_randr_get_screen_resources(connection, connection_.root()),
                                             nullptr));
}

void XMonitors::run(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"-display", display_});
  runTool("xrandr", "x11-xserver-utils", std::move(arguments), logFile_);
}

void XMonitors::add(const XMonitor& monitor) {
  const auto& area = monitor.area;
  const auto mode = monitor.name + "-mode-" + std::to_string(++modes_);
  std::vector<std::string> newMode{"--newmode", mode};
  for (const auto& number : timingsOf(area.width, area.height)) newMode.push_back(number);
  run(newMode);
  run({"--addmode", monitor.name, mode});
  std::vector<std::string> output{"--output", monitor.name, "--mode",
                                  mode,       "--pos",      std::to_string(area.x) + "x" + std::to_string(area.y)};
  if (monitor.primary) output.push_back("--primary");
  run(output);
  look();
  waitUntil("the monitor " + monitor.name + " is there", [&] {
    const auto now = all();
    return std::find(now.begin(), now.end(), monitor) != now.end();
  });
}

void XMonitors::remove(const std::string& name) {
  run({"--output", name, "--off"});
  look();
  waitUntil("the monitor " + name + " is gone", [&] {
    const auto now = all();
    return std::none_of(now.begin(), now.end(), [&](const XMonitor& each) { return each.name == name; });
  });
}

}  // namespace support
