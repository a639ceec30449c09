// `vamba-host` as a session starts it on a test's display: its process, its standard error, its placements file, and an
// extension whose behaviour a test changes while the host runs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "support/bitmap.hpp"
#include "support/child_process.hpp"
#include "support/session_bus.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace end_to_end {

/// The fake extension of tests/support. Settings apply to processes that start afterwards; a host starts one for each
/// load.
class ChangingExtension {
 public:
  ChangingExtension();

  /// Sets a variable such as FAKE_EXTENSION or FAKE_EXTENSION_TITLE.
  void set(const std::string& variable, const std::string& value);

  std::string program() const { return folder_.path("extension"); }
  /// The processes started so far, the oldest first.
  std::vector<pid_t> processes() const;
  /// The number of requests with this method, such as "timeline".
  std::size_t requests(const std::string& method) const;

 private:
  support::TemporaryFolder folder_;
  support::SessionBus::Environment variables_;
};

struct HostSettings {
  std::string extension = VAMBA_FAKE_EXTENSION;
  std::vector<std::string> arguments = {"desktop", "--verbose"};
  /// Added to the display's own. The language is Polish and the zone Warsaw unless set here.
  support::SessionBus::Environment variables = {};
  /// Variables to remove.
  std::vector<std::string> without = {};
  /// Sets SYSTEMD_EXEC_PID and JOURNAL_STREAM as systemd does for the main process of a service.
  bool asService = false;
};

/// What a host that was told to be verbose says for each load that brought a board.
inline constexpr const char* loaded = "a new timeline is shown";

class DesktopHost {
 public:
  /// `display` is the environment of a display of support/displays. Hosts of one display share their configuration.
  explicit DesktopHost(const support::SessionBus::Environment& display, const HostSettings& settings = {});

  pid_t id() const { return process_.id(); }

  /// What it has written to standard error, and whether it comes to write this so often.
  std::string said() const;
  bool says(const std::string& text, std::size_t times = 1) const;

  /// Waits until it has ended; its status.
  std::optional<int> exitStatus() const { return process_.exitStatus(); }
  /// Ends it as a session does, by SIGTERM; its status.
  std::optional<int> end() const;

  /// Its private written memory in MB, and the number of its open descriptors.
  double memory() const;
  std::size_t descriptors() const;

 private:
  support::TemporaryFolder folder_;
  support::ChildProcess process_;
};

/// The environment of a host on that display.
support::SessionBus::Environment hostEnvironment(support::SessionBus::Environment display);

/// The placements file of hosts on that display, and its content: null if there is no file.
std::filesystem::path placementsFile(const support::SessionBus::Environment& display);
nlohmann::json placements(const support::SessionBus::Environment& display);

/// The placement of one widget; null while the file holds fewer. Changes are saved after half a second.
nlohmann::json placedWidget(const support::SessionBus::Environment& display, std::size_t index);
/// A placement as the file holds it; `place` writes the file.
nlohmann::json placed(int id, const std::string& family, const std::string& connector, const std::string& corner, int x,
                      int y);
void place(const support::SessionBus::Environment& display, const nlohmann::json& widgets);

/// The extension's board drawn by `vamba-host show` with further options.
support::Bitmap exportedPicture(const support::SessionBus::Environment& display, const HostSettings& settings,
                                std::vector<std::string> options);

/// The picture over the background, as a screen shows it.
support::Bitmap over(const support::Bitmap& background, const support::Bitmap& picture);

}  // namespace end_to_end
