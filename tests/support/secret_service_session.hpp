// A session of a test's own with, where asked for, a real gnome-keyring-daemon whose keyring is unlocked. It touches no
// display and no keyring of the person's, and all that it started ends with it. Needs the packages dbus and
// gnome-keyring.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "base/descriptors/file_descriptor.hpp"
#include "support/child_process.hpp"
#include "support/session_bus.hpp"
#include "support/temporary_folder.hpp"

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

  /// Returns when the service can be used. The items outlive a restart.
  void startKeyring();
  void endKeyring();
  ChildProcess& keyring() { return *keyring_; }

  const std::string& busAddress() const { return bus_->address(); }
  std::filesystem::path dataHome() const;

  /// See SessionBus.
  std::map<std::string, std::string> environment() const { return bus_->environment(); }

  /// Adds an item to the login keyring beside those that are there.
  void store(const Attributes& attributes, const std::string& bytes);
  void lock();
  bool someoneServes();

 private:
  void waitUntilServed(bool served);
  /// The path of the collection for new items; "/" where there is none.
  std::string defaultCollection();

  TemporaryFolder folder_;
  std::optional<SessionBus> bus_;
  std::optional<ChildProcess> keyring_;
  base::FileDescriptor silentActivation_;
  BusConnection connection_;
};

}  // namespace support
