#include "host/credentials/secret_item.hpp"

#include <chrono>
#include <optional>

#include "base/tasks/deadline.hpp"
#include "platform/keychain/keychain_environment.hpp"
#include "platform/keychain/secret_service.hpp"
#include "platform/keychain/session_bus.hpp"

namespace host {
namespace {

using platform::BusFailure;
using platform::secretServiceName;
using platform::SessionBus;

std::unexpected<std::string> failure(const BusFailure& fault) {
  if (fault.kind == BusFailure::Kind::timedOut) return std::unexpected<std::string>(keyring_fault::silent);
  if (fault.errorName == "org.freedesktop.Secret.Error.IsLocked") {
    return std::unexpected<std::string>(keyring_fault::locked);
  }
  return std::unexpected<std::string>("the Secret Service could not store it" +
                                      (fault.errorName.empty() ? std::string() : " (" + fault.errorName + ")"));
}

/// The first object path of the answer.
std::expected<std::string, std::string> pathFrom(const platform::BusResult<platform::BusMessage>& answer,
                                                 const char* types) {
  if (!answer) return failure(answer.error());
  const char* first = nullptr;
  const char* second = nullptr;
  if (sd_bus_message_read(answer->get(), types, &first, &second) < 0) return failure({});
  return first;
}

int appendProperties(sd_bus_message* message, const std::string& label, const SecretItem& item) {
  int result = sd_bus_message_open_container(message, 'a', "{sv}");
  if (result >= 0) {
    result = sd_bus_message_append(message, "{sv}", "org.freedesktop.Secret.Item.Label", "s", label.c_str());
  }
  if (result >= 0) result = sd_bus_message_open_container(message, 'e', "sv");
  if (result >= 0) result = sd_bus_message_append(message, "s", "org.freedesktop.Secret.Item.Attributes");
  if (result >= 0) result = sd_bus_message_open_container(message, 'v', "a{ss}");
  if (result >= 0) result = sd_bus_message_open_container(message, 'a', "{ss}");
  for (const auto& [name, value] : item) {
    if (result >= 0) result = sd_bus_message_append(message, "{ss}", name.c_str(), value.c_str());
  }
  for (int containers = 0; containers < 4; ++containers) {
    if (result >= 0) result = sd_bus_message_close_container(message);
  }
  return result;
}

int appendSecret(sd_bus_message* message, const std::string& session, std::string_view bytes) {
  int result = sd_bus_message_open_container(message, 'r', "oayays");
  if (result >= 0) result = sd_bus_message_append(message, "o", session.c_str());
  if (result >= 0) result = sd_bus_message_append_array(message, 'y', nullptr, 0);
  if (result >= 0) result = sd_bus_message_append_array(message, 'y', bytes.data(), bytes.size());
  if (result >= 0) result = sd_bus_message_append(message, "s", "text/plain");
  return result < 0 ? result : sd_bus_message_close_container(message);
}

}  // namespace

std::expected<void, std::string> storeSecretItem(const std::string& label, const SecretItem& item,
                                                 std::string_view bytes) {
  const auto deadline = base::Deadline::after(std::chrono::seconds(5));
  const auto address = platform::sessionBusAddress();
  auto bus = address ? SessionBus::connect(*address, deadline)
                     : platform::BusResult<SessionBus>(std::unexpected(BusFailure{BusFailure::Kind::absent, {}}));
  if (!bus) return failure(bus.error());

  const auto collection =
      pathFrom(bus->call(
                   {secretServiceName, platform::secretServicePath, platform::secretServiceInterface, "ReadAlias"},
                   [](sd_bus_message* call) { return sd_bus_message_append(call, "s", "default"); }, deadline),
               "o");
  if (!collection) return std::unexpected(collection.error());
  if (*collection == "/")
    return std::unexpected<std::string>("the Secret Service has no default keyring; create one first");

  const auto session = platform::SecretService(*bus, deadline).openSession();
  if (!session) return failure(session.error());

  const auto created = bus->call(
      {secretServiceName, *collection, "org.freedesktop.Secret.Collection", "CreateItem"},
      [&](sd_bus_message* call) {
        sd_bus_message_sensitive(call);
        int result = appendProperties(call, label, item);
        if (result >= 0) result = appendSecret(call, *session, bytes);
        return result < 0 ? result : sd_bus_message_append(call, "b", 1);
      },
      deadline);
  const auto stored = pathFrom(created, "oo");
  if (!stored) return std::unexpected(stored.error());
  if (*stored == "/") return std::unexpected<std::string>(keyring_fault::asksFirst);
  return {};
}

}  // namespace host
