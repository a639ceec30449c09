#include "platform/keychain/secret_service.hpp"

#include <array>
#include <string_view>
#include <utility>

namespace platform {
namespace {

constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr const char* itemInterface = "org.freedesktop.Secret.Item";
constexpr const char* promptInterface = "org.freedesktop.Secret.Prompt";

std::unexpected<BusFailure> broken() { return std::unexpected(BusFailure{BusFailure::Kind::broken, {}}); }

int appendNothing(sd_bus_message*) { return 0; }

bool readPaths(const BusMessage& message, std::vector<std::string>& paths) {
  if (sd_bus_message_enter_container(message.get(), SD_BUS_TYPE_ARRAY, "o") < 0) return false;
  const char* path = nullptr;
  int result = 0;
  while ((result = sd_bus_message_read(message.get(), "o", &path)) > 0) paths.emplace_back(path);
  return result == 0 && sd_bus_message_exit_container(message.get()) >= 0;
}

int appendAttributes(const ItemIdentity& item, sd_bus_message* message) {
  const std::array<std::pair<const char*, const std::string*>, 4> attributes{{{"class", &item.itemClass},
                                                                              {"service", &item.service},
                                                                              {"account", &item.account},
                                                                              {"access-group", &item.accessGroup}}};
  int result = sd_bus_message_open_container(message, SD_BUS_TYPE_ARRAY, "{ss}");
  for (const auto& [name, value] : attributes) {
    if (result >= 0) result = sd_bus_message_append(message, "{ss}", name, value->c_str());
  }
  return result < 0 ? result : sd_bus_message_close_container(message);
}

}  // namespace

BusResult<BusMessage> SecretService::property(const std::string& path, const char* interface, const char* name) {
  return bus_.call(
      {secretServiceName, path, "org.freedesktop.DBus.Properties", "Get"},
      [&](sd_bus_message* message) { return sd_bus_message_append(message, "ss", interface, name); }, deadline_);
}

BusResult<bool> SecretService::anyCollectionUnlocked() {
  const auto answer = property(secretServicePath, secretServiceInterface, "Collections");
  if (!answer) return std::unexpected(answer.error());
  std::vector<std::string> collections;
  if (sd_bus_message_enter_container(answer->get(), SD_BUS_TYPE_VARIANT, "ao") < 0) return broken();
  if (!readPaths(*answer, collections)) return broken();
  for (const auto& collection : collections) {
    const auto state = property(collection, collectionInterface, "Locked");
    if (!state) return std::unexpected(state.error());
    int locked = 1;
    if (sd_bus_message_read(state->get(), "v", "b", &locked) < 0) return broken();
    if (locked == 0) return true;
  }
  return false;
}

BusResult<SecretService::Found> SecretService::searchItems(const ItemIdentity& item) {
  const auto answer = bus_.call(
      {secretServiceName, secretServicePath, secretServiceInterface, "SearchItems"},
      [&](sd_bus_message* message) { return appendAttributes(item, message); }, deadline_);
  if (!answer) return std::unexpected(answer.error());
  Found found;
  if (!readPaths(*answer, found.unlocked) || !readPaths(*answer, found.locked)) return broken();
  return found;
}

BusResult<std::uint64_t> SecretService::modified(const std::string& item) {
  const auto answer = property(item, itemInterface, "Modified");
  if (!answer) return std::unexpected(answer.error());
  std::uint64_t seconds = 0;
  if (sd_bus_message_read(answer->get(), "v", "t", &seconds) < 0) return broken();
  return seconds;
}

BusResult<std::string> SecretService::openSession() {
  const auto answer = bus_.call(
      {secretServiceName, secretServicePath, secretServiceInterface, "OpenSession"},
      [](sd_bus_message* message) { return sd_bus_message_append(message, "sv", "plain", "s", ""); }, deadline_);
  if (!answer) return std::unexpected(answer.error());
  const char* unused = nullptr;
  const char* session = nullptr;
  if (sd_bus_message_read(answer->get(), "vo", "s", &unused, &session) < 0) return broken();
  return std::string(session);
}

BusResult<base::SecretText> SecretService::secretOf(const std::string& item) {
  const auto session = openSession();
  if (!session) return std::unexpected(session.error());
  const auto answer = bus_.call(
      {secretServiceName, item, itemInterface, "GetSecret"},
      [&](sd_bus_message* message) { return sd_bus_message_append(message, "o", session->c_str()); }, deadline_);
  if (!answer) return std::unexpected(answer.error());
  const char* ofSession = nullptr;
  const void* bytes = nullptr;
  std::size_t size = 0;
  if (sd_bus_message_enter_container(answer->get(), SD_BUS_TYPE_STRUCT, "oayays") < 0 ||
      sd_bus_message_read(answer->get(), "o", &ofSession) < 0 ||
      sd_bus_message_read_array(answer->get(), SD_BUS_TYPE_BYTE, &bytes, &size) < 0 ||  // parameters, none in "plain"
      sd_bus_message_read_array(answer->get(), SD_BUS_TYPE_BYTE, &bytes, &size) < 0 || size > largestItem) {
    return broken();
  }
  return base::SecretText(std::string_view(static_cast<const char*>(bytes), size));
}

BusResult<SecretService::Deletion> SecretService::deleteItem(const std::string& item) {
  const auto answer = bus_.call({secretServiceName, item, itemInterface, "Delete"}, appendNothing, deadline_);
  if (!answer) return std::unexpected(answer.error());
  const char* prompt = nullptr;
  if (sd_bus_message_read(answer->get(), "o", &prompt) < 0) return broken();
  if (std::string_view(prompt) == "/") return Deletion::done;
  const auto dismissed = bus_.call({secretServiceName, prompt, promptInterface, "Dismiss"}, appendNothing, deadline_);
  if (!dismissed) return std::unexpected(dismissed.error());
  return Deletion::dismissedPrompt;
}

}  // namespace platform
