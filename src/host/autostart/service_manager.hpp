// What has to be asked of the user's service manager, which a session may have or not.
#pragma once

namespace host {

class ServiceManager {
 public:
  ServiceManager() = default;
  ServiceManager(const ServiceManager&) = delete;
  ServiceManager& operator=(const ServiceManager&) = delete;
  virtual ~ServiceManager() = default;

  /// Whether there is one and it knows that a graphical session runs now: then it will know of the next one.
  virtual bool knowsGraphicalSession() = 0;

  /// Has it read its units anew; without one, nothing.
  virtual void reload() = 0;
};

/// The user's systemd by way of systemctl(1).
class Systemd : public ServiceManager {
 public:
  bool knowsGraphicalSession() override;
  void reload() override;
};

}  // namespace host
