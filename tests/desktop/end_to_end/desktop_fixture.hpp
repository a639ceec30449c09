// `vamba-host` as a session starts it on a test's display: its process, what it says on standard error, the file that
// keeps its widgets' places, and an extension whose ways a test changes while the host runs.
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

/// The fake extension of tests/support. What is set counts for processes that start afterwards; a host starts one for
/// each load.
class ChangingExtension {
 public:
  ChangingExtension();

  /// Such as FAKE_EXTENSION or FAKE_EXTENSION_TITLE.
  void set(const std::string& variable, const std::string& value);

  std::string program() const { return folder_.path("extension"); }
  /// The processes that were started so far, the oldest first.
  std::vector<pid_t> processes() const;
  /// How often it was asked for this, such as "timeline".
  std::size_t requests(const std::string& method) const;

 private:
  support::TemporaryFolder folder_;
  support::SessionBus::Environment variables_;
};

struct HostSettings {
  std::string extension = VAMBA_FAKE_EXTENSION;
  std::vector<std::string> arguments = {"desktop", "--verbose"};
  /// Beside the display's own; the language is Polish and the zone Warsaw unless they say otherwise.
  support::SessionBus::Environment variables = {};
  /// Those that it goes without in spite of that.
  std::vector<std::string> without = {};
};

class DesktopHost {
 public:
  /// `display` is the environment of a display of support/displays. Hosts of one display share their configuration.
  explicit DesktopHost(const support::SessionBus::Environment& display, const HostSettings& settings = {});

  pid_t id() const { return process_.id(); }

  /// What it said so far, and whether it came to say this.
  std::string said() const;
  bool says(const std::string& text, std::size_t times = 1) const;

  /// Its status once it has ended.
  std::optional<int> exitStatus() const { return process_.exitStatus(); }
  /// Asks it to end as a session does; its status.
  std::optional<int> end() const;

  /// MB of memory that it has written and shares with nobody, and how many descriptors it has open.
  double memory() const;
  std::size_t descriptors() const;

 private:
  support::TemporaryFolder folder_;
  support::ChildProcess process_;
};

/// The variables with which a host on that display runs.
support::SessionBus::Environment hostEnvironment(support::SessionBus::Environment display);

/// Where hosts of that display keep their widgets' places, and what is kept: null where there is no file.
std::filesystem::path placementsFile(const support::SessionBus::Environment& display);
nlohmann::json placements(const support::SessionBus::Environment& display);

/// The placement of one widget; null while no file holds that many. A change is saved half a second after it was made.
nlohmann::json placedWidget(const support::SessionBus::Environment& display, std::size_t index);
/// Places one widget of a size, as its owner left it.
nlohmann::json placed(int id, const std::string& family, const std::string& connector, const std::string& corner, int x,
                      int y);
void place(const support::SessionBus::Environment& display, const nlohmann::json& widgets);

/// What `vamba-host show` draws of the extension's board, with further options.
support::Bitmap exportedPicture(const support::SessionBus::Environment& display, const HostSettings& settings,
                                std::vector<std::string> options);

/// The picture over the background, as a screen shows it.
support::Bitmap over(const support::Bitmap& background, const support::Bitmap& picture);

}  // namespace end_to_end
