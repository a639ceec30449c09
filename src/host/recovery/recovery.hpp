// The signs that a board with a sentence may show the day again before its reload date: somebody signed in, or the
// network is back. The feed gets them through an interface, so that a test can give them.
#pragma once

#include <optional>
#include <vector>

#include "host/recovery/credential_changes.hpp"
#include "host/recovery/network_changes.hpp"

namespace host {

class Recovery {
 public:
  struct Signs {
    bool credentials = false;
    bool network = false;
  };

  Recovery() = default;
  Recovery(const Recovery&) = delete;
  Recovery& operator=(const Recovery&) = delete;
  virtual ~Recovery() = default;

  /// Watches from now on, until `end`; both may be called again and again.
  virtual void begin() = 0;
  virtual void end() = 0;
  /// Readable, for poll(2), once there is something to take.
  virtual std::vector<int> descriptors() const = 0;
  virtual Signs take() = 0;
};

/// The machine's own keychain and network. While nothing changes it costs no wake-up.
class SystemRecovery final : public Recovery {
 public:
  void begin() override;
  void end() override;
  std::vector<int> descriptors() const override;
  Signs take() override;

 private:
  std::optional<CredentialChanges> credentials_;
  std::optional<NetworkChanges> network_;
};

}  // namespace host
