// Anything that the session's bus may send once it has authenticated the client: raw bytes, or answers in well-formed
// messages with any body. A keychain call ends in time with a status of its own; a secret that it finds is a piece of
// what was sent, and no longer than an item may be.
//
// The first byte says which call is made and how the rest is sent (see Plan); the rest of a framed input is answers of
// three bytes (type and signature, length of the body) and a body.
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "platform/keychain/secret_service_keychain.hpp"
#include "require.hpp"

namespace {

using fuzz::require;
using platform::KeychainKey;
using platform::KeychainStatus;
using namespace std::chrono_literals;

struct Plan {
  bool framed;
  bool erases;
  bool staysOpen;  // the bus neither ends nor says more; few inputs do, as each waits for the deadline
};

Plan planOf(std::uint8_t byte) {
  return {.framed = (byte & 1) != 0, .erases = (byte & 2) != 0, .staysOpen = byte >= 0xfc};
}

std::string littleEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift);
  return bytes;
}

void alignTo8(std::string& bytes) { bytes.resize((bytes.size() + 7) / 8 * 8, '\0'); }

/// A field of a message's header: its code and a value of this type.
std::string field(std::uint8_t code, char type, std::string_view value) {
  std::string bytes{static_cast<char>(code), '\1', type, '\0'};
  if (type == 'g') return bytes + static_cast<char>(value.size()) + std::string(value) + '\0';
  if (type == 'u') return bytes + std::string(value);
  return bytes + littleEndian(static_cast<std::uint32_t>(value.size())) + std::string(value) + '\0';
}

/// The answer to the client's call with this serial number (D-Bus specification, "Message Format"). An error is named
/// where the signature would stand.
std::string answer(std::uint32_t serial, bool isError, std::string_view signature, std::string_view body) {
  constexpr std::uint8_t errorName = 4;
  constexpr std::uint8_t replySerial = 5;
  constexpr std::uint8_t signatureOfBody = 8;
  std::string fields = field(replySerial, 'u', littleEndian(serial));
  alignTo8(fields);
  fields += isError ? field(errorName, 's', signature) : field(signatureOfBody, 'g', signature);
  if (isError) body = {};
  constexpr char noReplyExpected = 1;
  std::string message{'l', isError ? '\3' : '\2', noReplyExpected, '\1'};
  message += littleEndian(static_cast<std::uint32_t>(body.size())) + littleEndian(serial) +
             littleEndian(static_cast<std::uint32_t>(fields.size())) + fields;
  alignTo8(message);
  return message.append(body);
}

constexpr std::array<std::string_view, 10> signatures{"v", "aoao", "(oayays)", "vo", "o", "", "ao", "s", "ay", "u"};
constexpr std::array<std::string_view, 6> errors{
    "org.freedesktop.Secret.Error.IsLocked",     "org.freedesktop.Secret.Error.NoSuchObject",
    "org.freedesktop.DBus.Error.NameHasNoOwner", "org.freedesktop.DBus.Error.ServiceUnknown",
    "org.freedesktop.DBus.Error.UnknownMethod",  "org.example.Unknown"};

/// The answers in their order: the first call after Hello has the serial number 2.
std::string framedAnswers(std::string_view input) {
  std::string messages;
  for (std::uint32_t serial = 2; input.size() >= 3; ++serial) {
    const auto kind = static_cast<std::uint8_t>(input[0]);
    const std::size_t length = static_cast<std::uint8_t>(input[1]) | static_cast<std::size_t>(input[2] & 0x7f) << 8;
    const auto body = input.substr(3, length);
    input.remove_prefix(3 + body.size());
    const bool isError = (kind & 0x80) != 0;
    messages +=
        answer(serial, isError, isError ? errors[kind % errors.size()] : signatures[kind % signatures.size()], body);
  }
  return messages;
}

std::string helloAnswered() {
  const std::string authenticated = "DATA\r\nOK 0123456789abcdef0123456789abcdef\r\nAGREE_UNIX_FD\r\n";
  const std::string name = ":1.1";
  return authenticated + answer(1, false, "s", littleEndian(static_cast<std::uint32_t>(name.size())) + name + '\0');
}

/// Sends the same bytes to each client.
class Bus {
 public:
  Bus() : listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un own{};
    own.sun_family = AF_UNIX;
    // Without a name of its own the kernel chooses one that is no file.
    require(bind(listener_.get(), reinterpret_cast<sockaddr*>(&own), sizeof(sa_family_t)) == 0);
    socklen_t length = sizeof own;
    require(getsockname(listener_.get(), reinterpret_cast<sockaddr*>(&own), &length) == 0);
    address_ = "unix:abstract=" + std::string(own.sun_path + 1, length - sizeof(sa_family_t) - 1);
    require(listen(listener_.get(), SOMAXCONN) == 0);
    thread_ = std::thread(&Bus::serve, this);
  }
  ~Bus() {
    ending_ = true;
    shutdown(listener_.get(), SHUT_RDWR);
    thread_.join();
  }
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  const std::string& address() const { return address_; }

  void sends(std::string bytes, bool staysOpen) {
    const std::lock_guard lock(mutex_);
    bytes_ = std::move(bytes);
    staysOpen_ = staysOpen;
  }

 private:
  void serve() {
    while (!ending_) {
      const base::FileDescriptor client(accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
      if (client.isOpen()) talkTo(client.get());
    }
  }

  void talkTo(int client) {
    std::string bytes;
    bool staysOpen = false;
    {
      const std::lock_guard lock(mutex_);
      bytes = bytes_;
      staysOpen = staysOpen_;
    }
    for (std::string_view left = bytes; !left.empty();) {
      const ssize_t sent = send(client, left.data(), left.size(), MSG_NOSIGNAL);
      if (sent <= 0) return;
      left.remove_prefix(static_cast<std::size_t>(sent));
    }
    if (!staysOpen) shutdown(client, SHUT_WR);
    std::array<char, 4096> ignored;
    while (recv(client, ignored.data(), ignored.size(), 0) > 0) {
    }
  }

  const base::FileDescriptor listener_;
  std::string address_;
  std::atomic<bool> ending_ = false;
  std::mutex mutex_;
  std::string bytes_;
  bool staysOpen_ = false;
  std::thread thread_;
};

platform::KeychainQuery query() {
  return {{KeychainKey::itemClass, platform::genericPasswordClass},
          {KeychainKey::service, "pl.ferol.vamba"},
          {KeychainKey::account, "token-urzadzenia"},
          {KeychainKey::accessGroup, "group"},
          {KeychainKey::returnData, true}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static Bus bus;
  const Plan plan = planOf(data[0]);
  const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
  bus.sends(helloAnswered() + (plan.framed ? framedAnswers(input) : std::string(input)), plan.staysOpen);
  platform::SecretServiceKeychain keychain(
      {.busAddress = [] { return bus.address(); }, .longestCall = plan.staysOpen ? 20ms : 10'000ms});

  const auto begin = std::chrono::steady_clock::now();
  if (plan.erases) {
    const auto status = keychain.deleteItems(query());
    require(status <= KeychainStatus::needsPrompt || status == KeychainStatus::failed);
  } else {
    const auto found = keychain.copyMatching(query());
    require(found.status <= KeychainStatus::timedOut || found.status == KeychainStatus::failed);
    require(found.data.has_value() == (found.status == KeychainStatus::success));
    if (found.data) {
      require(found.data->text().size() <= platform::largestItem);
      require(input.find(found.data->text()) != std::string_view::npos);
    }
  }
  // Whatever the bus sends: an open connection is given up at the deadline, and a closed one at once.
  require(std::chrono::steady_clock::now() - begin < 5s);
  return 0;
}
