#include "support/secret_service_session.hpp"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <systemd/sd-bus.h>

#include "support/waiting.hpp"

namespace support {
namespace {

namespace fs = std::filesystem;
constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* loginCollection = "/org/freedesktop/secrets/collection/login";
constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr std::string_view password = "testpass";  // an empty one, or one with a line end, makes no login keyring

BusMessage makeCall(sd_bus* bus, const char* path, const char* interface, const char* member) {
  sd_bus_message* message = nullptr;
  check(sd_bus_message_new_method_call(bus, &message, serviceName, path, interface, member), member);
  check(sd_bus_message_set_auto_start(message, 0), member);
  return BusMessage(message);
}

BusMessage answerTo(sd_bus* bus, const BusMessage& call) {
  sd_bus_message* answer = nullptr;
  const auto limit = std::chrono::microseconds(longPatience).count();
  check(sd_bus_call(bus, call.get(), static_cast<std::uint64_t>(limit), nullptr, &answer),
        sd_bus_message_get_member(call.get()));
  return BusMessage(answer);
}

std::string unlockedKeyring(const fs::path& passwordFile) {
  return "/bin/sh -c \"exec gnome-keyring-daemon --foreground --unlock --components=secrets <" + passwordFile.native() +
         "\"";
}

void writeFile(const fs::path& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
}

}  // namespace

SecretServiceSession::SecretServiceSession(Activation activation) {
  const fs::path root = folder_.path(".");
  writeFile(root / "password", password);
  std::map<std::string, std::string> services;
  if (activation != Activation::none) {
    // The silent one reads a pipe whose other end this object holds, and so ends with it.
    const auto pipe = root / "pipe";
    check(mkfifo(pipe.c_str(), 0600) == 0 ? 0 : -errno, "mkfifo");
    silentActivation_.reset(open(pipe.c_str(), O_RDWR | O_CLOEXEC));
    services[serviceName] = activation == Activation::keyring ? unlockedKeyring(root / "password")
                                                              : "/bin/sh -c \"read line <" + pipe.native() + "\"";
  }
  bus_.emplace(services);
  connection_ = bus_->connect();
  check(sd_bus_add_match(connection_.get(), nullptr,
                         "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',"
                         "arg0='org.freedesktop.secrets'",
                         nullptr, nullptr),
        "watching names");
}

fs::path SecretServiceSession::dataHome() const { return bus_->path("home/.local/share"); }

void SecretServiceSession::startKeyring() {
  keyring_.emplace(ChildProcess::Start{{"gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"},
                                       environmentLines(environment()),
                                       std::string(password)});
  waitUntilServed(true);
  // For a moment the daemon may not know who asks, and then says that there is no collection.
  const auto end = std::chrono::steady_clock::now() + longPatience;
  while (defaultCollection() != loginCollection) {
    if (std::chrono::steady_clock::now() >= end) throw std::runtime_error("the keyring has no login collection");
  }
}

std::string SecretServiceSession::defaultCollection() {
  const auto call = makeCall(connection_.get(), servicePath, serviceInterface, "ReadAlias");
  check(sd_bus_message_append(call.get(), "s", "default"), "ReadAlias");
  const auto answer = answerTo(connection_.get(), call);
  const char* collection = "";
  check(sd_bus_message_read(answer.get(), "o", &collection), "ReadAlias");
  return collection;
}

void SecretServiceSession::endKeyring() {
  keyring_.reset();
  waitUntilServed(false);
}

bool SecretServiceSession::someoneServes() {
  const int owner = sd_bus_get_name_creds(connection_.get(), serviceName, 0, nullptr);
  if (owner < 0 && owner != -ENXIO) check(owner, "asking for the name's owner");
  return owner >= 0;
}

void SecretServiceSession::waitUntilServed(bool served) {
  const auto end = std::chrono::steady_clock::now() + longPatience;
  while (someoneServes() != served) {
    if (std::chrono::steady_clock::now() >= end) throw std::runtime_error("the keyring did not come or go in time");
    // Woken by NameOwnerChanged; the limit only bounds a loss of it.
    while (sd_bus_process(connection_.get(), nullptr) > 0) {
    }
    if (someoneServes() == served) return;
    check(sd_bus_wait(connection_.get(), 1'000'000), "waiting for the bus");
  }
}

void SecretServiceSession::store(const Attributes& attributes, const std::string& bytes) {
  const auto open = makeCall(connection_.get(), servicePath, serviceInterface, "OpenSession");
  check(sd_bus_message_append(open.get(), "sv", "plain", "s", ""), "OpenSession");
  const auto opened = answerTo(connection_.get(), open);
  const char* session = nullptr;
  check(sd_bus_message_read(opened.get(), "vo", "s", nullptr, &session), "OpenSession");

  const auto create = makeCall(connection_.get(), loginCollection, collectionInterface, "CreateItem");
  auto* message = create.get();
  int result = sd_bus_message_open_container(message, 'a', "{sv}");
  if (result >= 0) result = sd_bus_message_open_container(message, 'e', "sv");
  if (result >= 0) result = sd_bus_message_append(message, "s", "org.freedesktop.Secret.Item.Attributes");
  if (result >= 0) result = sd_bus_message_open_container(message, 'v', "a{ss}");
  if (result >= 0) result = sd_bus_message_open_container(message, 'a', "{ss}");
  for (const auto& [name, value] : attributes) {
    if (result >= 0) result = sd_bus_message_append(message, "{ss}", name.c_str(), value.c_str());
  }
  for (int containers = 0; containers < 4; ++containers) {
    if (result >= 0) result = sd_bus_message_close_container(message);
  }
  if (result >= 0) result = sd_bus_message_open_container(message, 'r', "oayays");
  if (result >= 0) result = sd_bus_message_append(message, "o", session);
  if (result >= 0) result = sd_bus_message_append_array(message, 'y', nullptr, 0);
  if (result >= 0) result = sd_bus_message_append_array(message, 'y', bytes.data(), bytes.size());
  if (result >= 0) result = sd_bus_message_append(message, "s", "text/plain");
  if (result >= 0) result = sd_bus_message_close_container(message);
  if (result >= 0) result = sd_bus_message_append(message, "b", 0);
  check(result, "CreateItem");
  const auto created = answerTo(connection_.get(), create);
  const char* item = "/";
  check(sd_bus_message_read(created.get(), "oo", &item, nullptr), "CreateItem");
  if (std::string_view(item) == "/") throw std::runtime_error("the keyring wants to ask before it stores an item");
}

void SecretServiceSession::lock() {
  const auto call = makeCall(connection_.get(), servicePath, serviceInterface, "Lock");
  check(sd_bus_message_append(call.get(), "ao", 1, loginCollection), "Lock");
  answerTo(connection_.get(), call);
}

}  // namespace support
