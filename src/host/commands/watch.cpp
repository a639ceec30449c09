#include <csignal>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "base/json/json_text.hpp"
#include "host/command_line/outcome.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"
#include "host/commands/terminal.hpp"
#include "host/diagnostics/diagnostics.hpp"
#include "host/feed/feed.hpp"
#include "host/recovery/recovery.hpp"
#include "host/schedule/wake_ups.hpp"
#include "host/status_line/status_line.hpp"
#include "host/texts/texts.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace host {
namespace {

constexpr const char* homeAndClear = "\x1b[H\x1b[2J";

/// Whether standard output is a pipe, socket or terminal whose other end is closed.
bool readerGone() {
  pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
  return poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

/// The board as it was last shown, and how it is shown again.
class Screen {
 public:
  Screen(Format format, protocol::WidgetFamily family) : format_(format), family_(family) {}

  bool empty() const { return !view_; }
  bool shows(const protocol::Node& view, BoardHolds holds) const { return view_ == view && holds_ == holds; }

  std::expected<void, std::string> show(protocol::Node view, BoardHolds holds) {
    view_ = std::move(view);
    holds_ = holds;
    return draw();
  }

  /// Again, for a terminal that changed its width.
  std::expected<void, std::string> draw() {
    if (!view_) return {};
    switch (format_) {
      case Format::json:
        return writeStandardOutput(base::toPrintableText(toJson(*view_)) + "\n");
      case Format::waybar:
      case Format::line:
        return writeStandardOutput(asLine(statusLine(*view_, holds_, userLanguage())));
      default:
        return drawText(*view_);
    }
  }

  /// Before there is any board: a status bar must not stay blank.
  std::expected<void, std::string> showFailure(const std::string& message) {
    if ((format_ != Format::waybar && format_ != Format::line) || view_) return {};
    const protocol::Node sentence = protocol::Node{.kind = protocol::TextNode{.content = protocol::Verbatim{message}}};
    return writeStandardOutput(asLine(statusLine(sentence, BoardHolds::sentence, userLanguage())));
  }

 private:
  std::string asLine(const StatusLine& line) const {
    return (format_ == Format::waybar ? toWaybarJson(line) : line.text) + "\n";
  }

  std::expected<void, std::string> drawText(const protocol::Node& view) {
    const auto options = terminalOptions(family_);
    std::string text = render::drawTerminalBoard(localised(view), options);
    if (options.escapes) return writeStandardOutput(homeAndClear + text);
    // Without escape sequences boards follow each other, with an empty line between them.
    const bool first = !std::exchange(drawn_, true);
    return writeStandardOutput(first ? text : "\n" + text);
  }

  Format format_;
  protocol::WidgetFamily family_;
  std::optional<protocol::Node> view_;
  BoardHolds holds_ = BoardHolds::day;
  bool drawn_ = false;
};

class Watcher {
 public:
  Watcher(ExtensionSettings settings, const CommandLine& line)
      : line_(line),
        screen_(line.format, line.family),
        feed_(
            withInterruption(std::move(settings), interruption_), [this](const FeedNews& news) { hear(news); }, time_,
            recovery_, Feed::Placeholders::none) {
    interruption_.add(signals_.descriptor());
    interruption_.addForItsEnd(STDOUT_FILENO);
  }

  CommandResult run() {
    if (!time_.works() || !signals_.works() || !interruption_.works()) {
      return std::unexpected(CommandFailure{exit_status::noAnswer, "too few file descriptors are left to watch"});
    }
    sayWhatIsInUse(line_);
    feed_.show({line_.family});
    while (!ended_) {
      auto descriptors = feed_.descriptors();
      descriptors.push_back(interruption_.descriptor());
      waitForAny(descriptors);
      if (readerGone()) return {};
      handleSignals();
      if (!ended_) feed_.handleWakeUps();
    }
    return result_;
  }

 private:
  static ExtensionSettings withInterruption(ExtensionSettings settings, const DescriptorSet& interruption) {
    settings.interruption = interruption.descriptor();
    return settings;
  }

  void hear(const FeedNews& news) {
    std::visit([this](const auto& each) { heard(each); }, news);
  }
  void heard(const WidgetDeclaration& /*widget*/) {}
  void heard(const ReloadPlanned& planned) {
    if (!line_.verbose || !planned.at) return;
    say(Priority::debug, "next reload at " + absl::FormatTime("%Y-%m-%d %H:%M:%S", *planned.at, absl::LocalTimeZone()));
  }

  void heard(const FeedBoards& boards) {
    const protocol::Node& view = boards.views.at(line_.family);
    if (boards.origin == BoardOrigin::load) {
      lastFailure_.clear();
    } else if (screen_.shows(view, boards.holds)) {
      return;
    }
    output(screen_.show(view, boards.holds));
  }

  void heard(const ExtensionFailure& failure) {
    if (screen_.empty() && failure.kind == ExtensionFailure::Kind::cannotStart) {
      return end(std::unexpected(CommandFailure{exit_status::noAnswer, failure.message}));
    }
    if (failure.message != lastFailure_) say(Priority::warning, failure.message);
    lastFailure_ = failure.message;
    output(screen_.showFailure(failure.message));
  }

  void handleSignals() {
    while (const int signal = signals_.take()) {
      if (signal == SIGUSR1) {
        feed_.reload();
      } else if (signal == SIGWINCH) {
        if (onTerminal() && line_.format == Format::text) output(screen_.draw());
      } else {
        end({});
      }
    }
  }

  void output(const std::expected<void, std::string>& written) {
    if (written) return;
    // A status bar that ends takes its module along, and that is no failure.
    if (readerGone()) return end({});
    end(std::unexpected(CommandFailure{exit_status::noAnswer, written.error()}));
  }

  void end(CommandResult result) {
    ended_ = true;
    result_ = std::move(result);
  }

  SignalDescriptor signals_{SIGINT, SIGTERM, SIGHUP, SIGWINCH, SIGUSR1};
  DescriptorSet interruption_;  ///< what ends a load early: a signal, or a reader that is gone
  const CommandLine& line_;
  Screen screen_;
  SystemTimekeeper time_;
  SystemRecovery recovery_;
  Feed feed_;
  std::string lastFailure_;
  bool ended_ = false;
  CommandResult result_;
};

}  // namespace

CommandResult watch(const ExtensionSettings& settings, const CommandLine& line) {
  return Watcher(settings, line).run();
}

}  // namespace host
