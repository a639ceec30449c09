// A session of a test's own: a message bus and, where asked for, a real gnome-keyring-daemon whose keyring is unlocked,
// with a home and a runtime folder that hold nothing else. It touches no display and no keyring of the person's, and
// all that it started ends with it. Needs the packages dbus and gnome-keyring.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "support/child_process.hpp"
#include "support/file_descriptor.hpp"
#include "support/temporary_folder.hpp"

struct sd_bus;

namespace support {

/// Every function throws std::runtime_error where something does not work as it does on a healthy machine.
class SecretServiceSession {
 public:
  using Attributes = std::map<std::string, std::string>;

  enum class Activation {
    none,     // nobody can be started by name
    keyring,  // the bus starts an unlocked gnome-keyring-daemon when asked for one
    silent,   // what the bus starts never takes the name
  };

  /// Starts the bus alone.
  explicit SecretServiceSession(Activation activation = Activation::none);
  SecretServiceSession(const SecretServiceSession&) = delete;
  SecretServiceSession& operator=(const SecretServiceSession&) = delete;
  ~SecretServiceSession();

  /// Returns when the service can be used. The items outlive a restart.
  void startKeyring();
  void endKeyring();
  ChildProcess& keyring() { return *keyring_; }

  const std::string& busAddress() const { return busAddress_; }
  std::filesystem::path dataHome() const;

  /// What a program that is to live in this session needs: `DBUS_SESSION_BUS_ADDRESS`, `HOME`, `XDG_RUNTIME_DIR`,
  /// `XDG_DATA_HOME`.
  std::map<std::string, std::string> environment() const;

  /// Adds an item to the login keyring beside those that are there.
  void store(const Attributes& attributes, const std::string& bytes);
  void lock();
  bool someoneServes();

 private:
  void waitUntilServed(bool served);

  TemporaryFolder folder_;
  std::string busAddress_;
  std::optional<ChildProcess> bus_;
  std::optional<ChildProcess> keyring_;
  FileDescriptor silentActivation_;
  sd_bus* connection_ = nullptr;
};

}  // namespace support
