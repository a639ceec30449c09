#include <cstdio>

#include "host/command_line/outcome.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"
#include "host/commands/terminal.hpp"
#include "host/feed/feed.hpp"
#include "host/texts/texts.hpp"
#include "protocol/json_rpc/json_text.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace host {
namespace {

constexpr const char* homeAndClear = "\x1b[H\x1b[2J";

/// The board as it was last shown, and how it is shown again.
class Screen {
 public:
  Screen(Format format, std::string family) : format_(format), family_(std::move(family)) {}

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
        return writeStandardOutput(protocol::json_rpc::toText(toJson(*view_)) + "\n");
      case Format::waybar:
        return writeStandardOutput(toWaybarJson(statusLine(*view_, holds_)) + "\n");
      default:
        return drawText(*view_);
    }
  }

  /// Before there is any board: a status bar must not stand blank.
  std::expected<void, std::string> showFailure(const std::string& message) {
    if (format_ != Format::waybar || view_) return {};
    const protocol::Node sentence = protocol::Node{.kind = protocol::TextNode{.content = protocol::Verbatim{message}}};
    return writeStandardOutput(toWaybarJson(statusLine(sentence, BoardHolds::sentence)) + "\n");
  }

 private:
  std::expected<void, std::string> drawText(const protocol::Node& view) {
    const auto options = terminalOptions(family_);
    std::string text = render::drawTerminalBoard(localised(view), options);
    if (options.escapes) return writeStandardOutput(homeAndClear + text);
    // Without escape sequences boards follow each other, parted by an empty line.
    const bool first = std::exchange(drawn_, true) == false;
    return writeStandardOutput(first ? text : "\n" + text);
  }

  Format format_;
  std::string family_;
  std::optional<protocol::Node> view_;
  BoardHolds holds_ = BoardHolds::day;
  bool drawn_ = false;
};

class Watcher : FeedListener {
 public:
  Watcher(ExtensionSettings settings, const CommandLine& line)
      : line_(line),
        screen_(line.format, line.family),
        feed_(withInterruption(std::move(settings), signals_), *this, Feed::Placeholders::none) {}

  CommandResult run() {
    feed_.show({line_.family});
    while (!ended_) {
      const auto [date, redraw, pause, zone] = feed_.descriptors();
      waitForAny({signals_.descriptor(), date, redraw, pause, zone});
      handleSignals();
      if (!ended_) feed_.handleWakeUps();
    }
    return result_;
  }

 private:
  static ExtensionSettings withInterruption(ExtensionSettings settings, const SignalDescriptor& signals) {
    settings.interruption = signals.descriptor();
    return settings;
  }

  void widgetFound(const WidgetDeclaration& /*widget*/) override {}
  void reloadPlanned(std::optional<absl::Time> /*reload*/) override {}

  void boardsChanged(const FeedBoards& boards) override {
    const protocol::Node& view = boards.views.at(line_.family);
    if (boards.origin == BoardOrigin::load) {
      lastFailure_.clear();
    } else if (screen_.shows(view, boards.holds)) {
      return;
    }
    output(screen_.show(view, boards.holds));
  }

  void failed(const ExtensionFailure& failure) override {
    if (screen_.empty() && failure.kind == ExtensionFailure::Kind::cannotStart) {
      return end(std::unexpected(CommandFailure{exit_status::noAnswer, failure.message}));
    }
    if (failure.message != lastFailure_) std::fprintf(stderr, "vamba-host: %s\n", failure.message.c_str());
    lastFailure_ = failure.message;
    output(screen_.showFailure(failure.message));
  }

  void handleSignals() {
    while (const int signal = signals_.take()) {
      if (signal == SIGWINCH) {
        if (onTerminal() && line_.format == Format::text) output(screen_.draw());
      } else {
        end({});
      }
    }
  }

  void output(const std::expected<void, std::string>& written) {
    if (!written) end(std::unexpected(CommandFailure{exit_status::noAnswer, written.error()}));
  }

  void end(CommandResult result) {
    ended_ = true;
    result_ = std::move(result);
  }

  SignalDescriptor signals_{SIGINT, SIGTERM, SIGHUP, SIGWINCH};
  const CommandLine& line_;
  Screen screen_;
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
