#include "support/displays/accessible_objects.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <systemd/sd-bus.h>

#include "support/waiting.hpp"

namespace support {
namespace {

constexpr const char* launcherProgram = "/usr/libexec/at-spi-bus-launcher";
constexpr const char* registryName = "org.a11y.atspi.Registry";
constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";

struct Reference {
  std::string owner;
  std::string path;
};

// Objects go while they are being looked at; such a call has no answer.
BusMessage call(sd_bus* bus, const Reference& object, const char* interface, const char* member) {
  sd_bus_message* reply = nullptr;
  sd_bus_call_method(bus, object.owner.c_str(), object.path.c_str(), interface, member, nullptr, &reply, "");
  return BusMessage(reply);
}

std::string property(sd_bus* bus, const Reference& object, const char* name) {
  char* value = nullptr;
  const int result = sd_bus_get_property_string(bus, object.owner.c_str(), object.path.c_str(), accessibleInterface,
                                                name, nullptr, &value);
  const std::unique_ptr<char, decltype(&std::free)> owned(value, &std::free);
  return result < 0 ? std::string() : value;
}

std::string roleOf(sd_bus* bus, const Reference& object) {
  const auto reply = call(bus, object, accessibleInterface, "GetRoleName");
  const char* role = "";
  if (reply) sd_bus_message_read(reply.get(), "s", &role);
  return role;
}

std::vector<Reference> childrenOf(sd_bus* bus, const Reference& object) {
  std::vector<Reference> children;
  const auto reply = call(bus, object, accessibleInterface, "GetChildren");
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "(so)") < 0) return children;
  const char* owner = nullptr;
  const char* path = nullptr;
  while (sd_bus_message_read(reply.get(), "(so)", &owner, &path) > 0) children.push_back({owner, path});
  return children;
}

bool hasInterface(sd_bus* bus, const Reference& object, const char* name) {
  const auto reply = call(bus, object, accessibleInterface, "GetInterfaces");
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "s") < 0) return false;
  const char* each = nullptr;
  while (sd_bus_message_read(reply.get(), "s", &each) > 0) {
    if (std::strcmp(each, name) == 0) return true;
  }
  return false;
}

/// In the person's language.
std::vector<std::string> actionNamesOf(sd_bus* bus, const Reference& object) {
  std::vector<std::string> names;
  if (!hasInterface(bus, object, "org.a11y.atspi.Action")) return names;
  const auto reply = call(bus, object, "org.a11y.atspi.Action", "GetActions");
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "(sss)") < 0) return names;
  const char* name = nullptr;
  while (sd_bus_message_read(reply.get(), "(sss)", &name, nullptr, nullptr) > 0) names.emplace_back(name);
  return names;
}

std::vector<std::string> actionsOf(sd_bus* bus, const Reference& object, std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(bus, object.owner.c_str(), object.path.c_str(), "org.a11y.atspi.Action", "GetName", nullptr,
                       &reply, "i", static_cast<int>(i));
    const BusMessage owned(reply);
    const char* name = "";
    if (reply != nullptr) sd_bus_message_read(reply, "s", &name);
    names.emplace_back(name);
  }
  return names;
}

/// On the screen.
ScreenArea extentsOf(sd_bus* bus, const Reference& object) {
  ScreenArea area;
  sd_bus_message* reply = nullptr;
  sd_bus_call_method(bus, object.owner.c_str(), object.path.c_str(), "org.a11y.atspi.Component", "GetExtents", nullptr,
                     &reply, "u", 0U);
  const BusMessage owned(reply);
  if (reply != nullptr) sd_bus_message_read(reply, "(iiii)", &area.x, &area.y, &area.width, &area.height);
  return area;
}

bool hasState(sd_bus* bus, const Reference& object, unsigned state) {
  const auto reply = call(bus, object, accessibleInterface, "GetState");
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "u") < 0) return false;
  constexpr unsigned bits = 32;
  std::uint32_t states = 0;
  for (unsigned word = 0; sd_bus_message_read(reply.get(), "u", &states) > 0; ++word) {
    if (word == state / bits) return (states >> state % bits & 1U) != 0;
  }
  return false;
}

std::optional<pid_t> processOf(sd_bus* bus, const std::string& owner) {
  sd_bus_creds* credentials = nullptr;
  pid_t process = 0;
  const int result = sd_bus_get_name_creds(bus, owner.c_str(), SD_BUS_CREDS_PID, &credentials);
  const bool known = result >= 0 && sd_bus_creds_get_pid(credentials, &process) >= 0;
  sd_bus_creds_unref(credentials);
  return known ? std::optional(process) : std::nullopt;
}

struct Found {
  Reference reference;
  AccessibleObject object;
};

std::vector<Found> objectsOf(sd_bus* bus, pid_t process) {
  std::vector<Found> found;
  const std::function<void(const Reference&, int)> visit = [&](const Reference& object, int depth) {
    constexpr unsigned focusable = 11;
    constexpr unsigned focused = 12;
    const auto actionNames = actionNamesOf(bus, object);
    found.push_back({object,
                     {.depth = depth,
                      .role = roleOf(bus, object),
                      .name = property(bus, object, "Name"),
                      .description = property(bus, object, "Description"),
                      .actions = actionsOf(bus, object, actionNames.size()),
                      .actionNames = actionNames,
                      .focusable = hasState(bus, object, focusable),
                      .focused = hasState(bus, object, focused)}});
    for (const auto& child : childrenOf(bus, object)) visit(child, depth + 1);
  };
  for (const auto& program : childrenOf(bus, {registryName, rootPath})) {
    if (processOf(bus, program.owner) != process) continue;
    for (const auto& window : childrenOf(bus, program)) visit(window, 0);
  }
  return found;
}

/// The two texts of an event: its detail, and its value if that is a text.
std::pair<std::string, std::string> textsOf(sd_bus_message* signal) {
  const char* detail = "";
  const char* contents = nullptr;
  const char* value = "";
  if (sd_bus_message_read(signal, "sii", &detail, nullptr, nullptr) < 0) return {};
  sd_bus_message_peek_type(signal, nullptr, &contents);
  if (contents != nullptr && std::strcmp(contents, "s") == 0) sd_bus_message_read(signal, "v", "s", &value);
  return {detail, value};
}

int changed(sd_bus_message* signal, void* changes, sd_bus_error*) {
  const auto [name, text] = textsOf(signal);
  static_cast<std::vector<std::string>*>(changes)->push_back(name + ": " + text);
  return 0;
}

int announced(sd_bus_message* signal, void* announcements, sd_bus_error*) {
  const auto [detail, value] = textsOf(signal);
  static_cast<std::vector<std::string>*>(announcements)->push_back(value.empty() ? detail : value);
  return 0;
}

// Programs send only events for which somebody has registered.
void askFor(sd_bus* bus, const char* event) {
  sd_bus_message* reply = nullptr;
  check(sd_bus_call_method(bus, registryName, "/org/a11y/atspi/registry", registryName, "RegisterEvent", nullptr,
                           &reply, "s", event),
        "asking for events");
  sd_bus_message_unref(reply);
}

ChildProcess launch(const SessionBus& bus) {
  return ChildProcess({.command = {launcherProgram, "--launch-immediately"},
                       .environment = environmentLines(bus.environment()),
                       .input = {},
                       .errorFile = bus.path("accessibility.log"),
                       .package = "at-spi2-core",
                       .endSignal = SIGTERM});
}

// Whoever is asked first may not be there yet.
std::string accessibilityAddress(const SessionBus& bus) {
  const auto connection = bus.connect();
  std::string address;
  waitUntil("the accessibility bus is there", [&] {
    const auto reply = call(connection.get(), {"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress");
    const char* text = "";
    if (reply) sd_bus_message_read(reply.get(), "s", &text);
    address = text;
    return !address.empty();
  });
  return address;
}

}  // namespace

AccessibleObjects::AccessibleObjects(SessionBus& bus)
    : bus_(bus), launcher_(launch(bus)), connection_(connectToBus(accessibilityAddress(bus))) {
  auto* const raw = connection_.get();
  check(sd_bus_match_signal(raw, nullptr, nullptr, nullptr, "org.a11y.atspi.Event.Object", "PropertyChange", &changed,
                            &changes_),
        "listening for changes");
  check(sd_bus_match_signal(raw, nullptr, nullptr, nullptr, "org.a11y.atspi.Event.Object", "Announcement", &announced,
                            &announcements_),
        "listening for announcements");
  askFor(raw, "object:property-change");
  askFor(raw, "object:announcement");
  bus_.setVariable("NO_AT_BRIDGE", std::nullopt);
}

AccessibleObjects::~AccessibleObjects() { bus_.setVariable("NO_AT_BRIDGE", "1"); }

std::vector<AccessibleObject> AccessibleObjects::of(pid_t process) {
  std::vector<AccessibleObject> objects;
  for (auto& each : objectsOf(connection_.get(), process)) objects.push_back(std::move(each.object));
  return objects;
}

ScreenArea AccessibleObjects::areaOf(pid_t process, const std::string& name) {
  for (const auto& [reference, object] : objectsOf(connection_.get(), process)) {
    if (object.name == name) return extentsOf(connection_.get(), reference);
  }
  return {};
}

bool AccessibleObjects::act(pid_t process, const std::string& name, const std::string& action) {
  for (const auto& [reference, object] : objectsOf(connection_.get(), process)) {
    const auto known = std::ranges::find(object.actions, action);
    if (object.name != name || known == object.actions.end()) continue;
    sd_bus_message* reply = nullptr;
    const int result =
        sd_bus_call_method(connection_.get(), reference.owner.c_str(), reference.path.c_str(), "org.a11y.atspi.Action",
                           "DoAction", nullptr, &reply, "i", static_cast<int>(known - object.actions.begin()));
    const BusMessage owned(reply);
    int done = 0;
    return result >= 0 && sd_bus_message_read(reply, "b", &done) >= 0 && done != 0;
  }
  return false;
}

std::vector<std::string> AccessibleObjects::changes() {
  while (sd_bus_process(connection_.get(), nullptr) > 0) {
  }
  return changes_;
}

std::vector<std::string> AccessibleObjects::announcements() {
  changes();
  return announcements_;
}

}  // namespace support
