#include "platform/keychain/fake_secret_service.hpp"

#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace platform::testing {
namespace {

const std::string itemFolder = "/org/freedesktop/secrets/collection/login/";

}  // namespace

FakeSecretService::FakeSecretService(const std::string& busAddress, FakeBehaviour behaviour)
    : behaviour_(std::move(behaviour)), bus_(support::connectToBus(busAddress)), stop_(eventfd(0, EFD_CLOEXEC)) {
  support::check(sd_bus_add_filter(bus_.get(), nullptr, dispatch, this), "adding a filter");
  support::check(sd_bus_request_name(bus_.get(), "org.freedesktop.secrets", 0), "asking for the name");
  thread_ = std::thread([this] { serve(); });
}

FakeSecretService::~FakeSecretService() {
  eventfd_write(stop_.get(), 1);
  thread_.join();
  sd_bus_flush(bus_.get());
}

std::vector<std::string> FakeSecretService::calls() {
  const std::lock_guard lock(mutex_);
  return calls_;
}

bool FakeSecretService::holds(const std::string& item) {
  const std::lock_guard lock(mutex_);
  return behaviour_.items.contains(item);
}

void FakeSecretService::serve() {
  while (true) {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {
    }
    pollfd waits[] = {{sd_bus_get_fd(bus_.get()), static_cast<short>(sd_bus_get_events(bus_.get())), 0},
                      {stop_.get(), POLLIN, 0}};
    poll(waits, 2, -1);
    if (waits[1].revents != 0) return;
  }
}

int FakeSecretService::dispatch(sd_bus_message* call, void* self, sd_bus_error*) {
  std::uint8_t type = 0;
  sd_bus_message_get_type(call, &type);
  if (type != SD_BUS_MESSAGE_METHOD_CALL) return 0;
  static_cast<FakeSecretService*>(self)->answer(call);
  return 1;
}

int FakeSecretService::answer(sd_bus_message* call) {
  const std::lock_guard lock(mutex_);
  const std::string path = sd_bus_message_get_path(call);
  const std::string item = path.starts_with(itemFolder) ? path.substr(itemFolder.size()) : std::string();
  std::string member = sd_bus_message_get_member(call);
  const bool isProperty = member == "Get";
  if (isProperty) {
    const char* name = nullptr;
    sd_bus_message_read(call, "ss", nullptr, &name);
    member = name;
  }
  calls_.push_back(member);
  if (behaviour_.silent.contains(member)) return 0;
  if (behaviour_.wrongSignature.contains(member)) return sd_bus_reply_method_return(call, "u", 7U);
  if (auto left = behaviour_.unknownMethod.find(member); left != behaviour_.unknownMethod.end() && left->second > 0) {
    --left->second;
    return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_UNKNOWN_METHOD, "not yet");
  }
  if (const auto error = behaviour_.errors.find(member); error != behaviour_.errors.end()) {
    return sd_bus_reply_method_errorf(call, error->second.c_str(), "as told");
  }
  if (isProperty) return answerProperty(call, item, member);

  if (member == "OpenSession") return sd_bus_reply_method_return(call, "vo", "s", "", "/org/freedesktop/secrets/s/1");
  if (member == "Dismiss") return sd_bus_reply_method_return(call, nullptr);
  sd_bus_message* reply = nullptr;
  sd_bus_message_new_method_return(call, &reply);
  if (member == "SearchItems") {
    for (const bool locked : {false, true}) {
      sd_bus_message_open_container(reply, 'a', "o");
      for (const auto& [name, found] : behaviour_.items) {
        if (found.locked == locked) sd_bus_message_append(reply, "o", (itemFolder + name).c_str());
      }
      sd_bus_message_close_container(reply);
    }
  } else if (member == "GetSecret" && behaviour_.items.contains(item)) {
    const auto& bytes = behaviour_.items.at(item).bytes;
    sd_bus_message_open_container(reply, 'r', "oayays");
    sd_bus_message_append(reply, "o", "/org/freedesktop/secrets/s/1");
    sd_bus_message_append_array(reply, 'y', nullptr, 0);
    sd_bus_message_append_array(reply, 'y', bytes.data(), bytes.size());
    sd_bus_message_append(reply, "s", "text/plain");
    sd_bus_message_close_container(reply);
  } else if (member == "Delete" && behaviour_.items.contains(item)) {
    if (!behaviour_.deletePrompts) behaviour_.items.erase(item);
    sd_bus_message_append(reply, "o", behaviour_.deletePrompts ? "/org/freedesktop/secrets/prompt/1" : "/");
  } else {
    sd_bus_message_unref(reply);
    return sd_bus_reply_method_errorf(call, "org.freedesktop.Secret.Error.NoSuchObject", "no such object");
  }
  const int sent = sd_bus_send(bus_.get(), reply, nullptr);
  sd_bus_message_unref(reply);
  return sent;
}

int FakeSecretService::answerProperty(sd_bus_message* call, const std::string& item, const std::string& name) {
  if (name == "Collections") {
    return sd_bus_reply_method_return(call, "v", "ao", 1, "/org/freedesktop/secrets/collection/login");
  }
  if (name == "Locked") return sd_bus_reply_method_return(call, "v", "b", behaviour_.collectionLocked ? 1 : 0);
  if (name == "Modified" && behaviour_.items.contains(item)) {
    return sd_bus_reply_method_return(call, "v", "t", behaviour_.items.at(item).modified);
  }
  return sd_bus_reply_method_errorf(call, "org.freedesktop.Secret.Error.NoSuchObject", "no such object");
}

}  // namespace platform::testing
