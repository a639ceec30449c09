// What the autostart asks of the user's service manager. A session may have none.
#pragma once

namespace host {

class ServiceManager {
 public:
  ServiceManager() = default;
  ServiceManager(const ServiceManager&) = delete;
  ServiceManager& operator=(const ServiceManager&) = delete;
  virtual ~ServiceManager() = default;

  /// Whether there is one, and graphical-session.target is active in it. The next session will then reach it too.
  virtual bool knowsGraphicalSession() = 0;

  /// Whether it can start a service in a user namespace of its own and without any capability. Not where the system
  /// refuses user namespaces.
  virtual bool canTakeCapabilitiesAway() = 0;

  /// Makes it read its units again. Does nothing where there is none.
  virtual void reload() = 0;
};

/// The user's systemd by way of systemctl(1) and systemd-run(1).
class Systemd : public ServiceManager {
 public:
  bool knowsGraphicalSession() override;
  bool canTakeCapabilitiesAway() override;
  void reload() override;
};

}  // namespace host
