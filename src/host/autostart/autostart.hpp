// Whether the widgets come up with a session, and by which means: a unit of the user's systemd where that knows of the
// graphical session, else an entry of XDG autostart. Never both: the second start would open the gallery.
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
  std::filesystem::path program;  ///< that is started
  bool programThere = true;       ///< whether that can be run still
  bool operator==(const AutostartStatus&) const = default;
};

/// Errors are sentences for a person, without a full stop. Files that it did not write itself are an error wherever
/// they bear the name of its own, and stay as they are.
class Autostart {
 public:
  /// The folder is the user's configuration (`base::userConfigFolder`).
  Autostart(const std::filesystem::path& configFolder, ServiceManager& services);

  /// Has `program`, an absolute path, started as `PROGRAM desktop` with each session from the next one on.
  std::expected<AutostartStatus, std::string> on(const std::filesystem::path& program);

  /// Whether on or not before.
  std::expected<void, std::string> off();

  /// None: off.
  std::expected<std::optional<AutostartStatus>, std::string> status() const;

 private:
  std::expected<void, std::string> remove(StartMeans means);

  std::filesystem::path unit_;
  std::filesystem::path link_;  ///< by which the graphical session wants the unit
  std::filesystem::path entry_;
  ServiceManager& services_;
};

}  // namespace host
