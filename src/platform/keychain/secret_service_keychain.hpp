// Keychain items in the session's Secret Service (org.freedesktop.secrets), as gnome-keyring, KWallet and KeePassXC
// offer it. An item bears the attributes `class`, `service`, `account` and `access-group`.
//
// Reads never show a dialog and never block for long: each call has a private connection and one deadline for all of
// its steps, and it uses neither Unlock nor Prompt. It does not search while every collection is locked, because some
// services ask for the password then.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/keychain/circuit_breaker.hpp"
#include "platform/keychain/keychain.hpp"
#include "platform/keychain/keychain_environment.hpp"
#include "platform/keychain/refusals.hpp"

namespace platform {

class ServiceActivation;
struct BusFailure;

class SecretServiceKeychain final : public Keychain {
 public:
  struct Settings {
    /// Returns the session bus's address, or nothing where the session has no bus. Called at each use.
    std::function<std::optional<std::string>()> busAddress = sessionBusAddress;
    /// The longest that one call takes, including connecting and authenticating.
    std::chrono::steady_clock::duration longestCall = std::chrono::seconds(2);
    /// After a call that took too long, calls answer `timedOut` at once for this long.
    std::chrono::steady_clock::duration pauseAfterTimeout = std::chrono::seconds(60);
    MonotonicClock clock = std::chrono::steady_clock::now;
    /// Called when the service took too long.
    DiagnosticSink diagnostics = [](std::string_view) {};
  };

  explicit SecretServiceKeychain(Settings settings);
  ~SecretServiceKeychain() override;

 private:
  KeychainResult find(const KeychainQuery& query, base::Deadline deadline) override;
  KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) override;

  KeychainStatus statusOfFailure(const BusFailure& failure, base::Deadline deadline);

  Settings settings_;
  CircuitBreaker breaker_;
  std::unique_ptr<ServiceActivation> activation_;
};

}  // namespace platform
