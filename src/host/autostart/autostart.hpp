// Starts the widgets with each session: by a unit of the user's systemd where graphical-session.target is active, else
// by an entry of XDG autostart. Never by both, because a second start opens the gallery.
//
//   Systemd systemd;
//   Autostart autostart(*base::userConfigFolder(std::getenv), systemd);
//   autostart.on("/usr/bin/vamba-host");  // from the next session on
//   autostart.status();                   // which file does it, or std::nullopt
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "host/autostart/service_manager.hpp"

namespace host {

enum class StartMeans { systemdUnit, autostartEntry };

struct AutostartStatus {
  StartMeans means;
  std::filesystem::path file;
  std::filesystem::path program;  ///< the program that is started
  bool programThere = true;       ///< whether it can still be run
  bool operator==(const AutostartStatus&) const = default;
};

/// Errors are sentences for a person, without a full stop. A file of one of its names that it did not write is an error
/// and is left as it is.
class Autostart {
 public:
  /// The folder is the user's configuration (`base::userConfigFolder`).
  Autostart(const std::filesystem::path& configFolder, ServiceManager& services);

  /// Starts `program`, an absolute path, as `PROGRAM desktop` in each session from the next one on.
  std::expected<AutostartStatus, std::string> on(const std::filesystem::path& program);

  /// Removes what `on` wrote. No error where there is nothing to remove.
  std::expected<void, std::string> off();

  /// None where it is off.
  std::expected<std::optional<AutostartStatus>, std::string> status() const;

 private:
  std::expected<void, std::string> remove(StartMeans means);

  std::filesystem::path unit_;
  std::filesystem::path link_;  ///< the link in graphical-session.target.wants
  std::filesystem::path entry_;
  ServiceManager& services_;
};

}  // namespace host
