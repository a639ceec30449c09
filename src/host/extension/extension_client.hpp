// The extension as its host sees it: questions and answers. Starts the process when it is needed, and ends it when it
// is not or when it misbehaves. The caller decides how soon to ask again after a failure (host/schedule).
//
//   ExtensionClient extension({.program = "/usr/libexec/vamba/vamba-widzety"});
//   const auto widgets = extension.widgets();  // starts the process
//   const auto timeline = extension.timeline(widgets->front().kind, protocol::WidgetFamily::systemMedium);  // up to 30
//   s extension.stop();
#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <absl/time/time.h>
#include <nlohmann/json.hpp>

#include "host/extension/answers.hpp"
#include "host/extension/extension_failure.hpp"
#include "protocol/view_tree/node.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace host {

struct ExtensionSettings {
  std::filesystem::path program;
  absl::Duration requestDeadline = absl::Seconds(5);
  absl::Duration loadDeadline = absl::Seconds(30);       ///< for a timeline and a live snapshot
  absl::Duration timeToLeave = absl::Milliseconds(500);  ///< from the end of its input until it is killed
  int interruption = -1;                      ///< a descriptor: once it is readable, a call gives up with `interrupted`
  int diagnostics = 2;                        ///< where the extension's standard error goes, within bounds; -1: nowhere
  std::vector<std::string> environment = {};  ///< "NAME=VALUE", added to the host's own
  bool verbose = false;                       ///< say on standard error what is asked and how long the answer took
};

/// For one thread, which lives as long as the client. The program ignores SIGPIPE. The first call starts the process,
/// and so does one after it ended. After any failure but `cannotStart` and `refused`, the process and everything that
/// it started is gone before the call returns.
class ExtensionClient {
 public:
  template <typename Result>
  using Answer = std::expected<Result, ExtensionFailure>;

  explicit ExtensionClient(ExtensionSettings settings);
  /// Ends the process as `stop` does.
  ~ExtensionClient();

  Answer<std::vector<WidgetDeclaration>> widgets();
  Answer<nlohmann::json> widgetsJson();  ///< as it came

  Answer<Entry> placeholder(const std::string& kind, protocol::WidgetFamily family);
  Answer<Entry> snapshot(const std::string& kind, protocol::WidgetFamily family, bool isPreview);
  Answer<TimelineAnswer> timeline(const std::string& kind, protocol::WidgetFamily family);

  /// The result of one of these three methods as it came, once it is checked.
  Answer<nlohmann::json> resultOf(const std::string& method, const std::string& kind, protocol::WidgetFamily family,
                                  bool isPreview = false);

  /// `entry` is JSON.
  Answer<protocol::Node> render(const std::string& kind, protocol::WidgetFamily family, const std::string& entry);

  bool running() const;

  /// Ends an idle extension: closes its input, waits shortly, kills what is left. The next call starts it again.
  void stop();

 private:
  /// `params` is JSON.
  Answer<nlohmann::json> ask(const std::string& method, const std::string& params, absl::Duration deadline);
  template <typename Result, typename Read>
  Answer<Result> askFor(const std::string& method, const std::string& params, absl::Duration deadline, Read read);

  absl::Duration deadlineOf(const std::string& method, bool isPreview) const;

  ExtensionSettings settings_;
  std::unique_ptr<class ExtensionSession> session_;
};

}  // namespace host
