#include <cstdio>

#include <absl/time/clock.h>

#include "host/commands/commands.hpp"
#include "host/commands/exit_status.hpp"
#include "host/commands/output.hpp"
#include "host/commands/terminal.hpp"
#include "host/schedule/reload_schedule.hpp"
#include "host/schedule/wake_ups.hpp"
#include "host/texts/texts.hpp"
#include "platform/calendar/clock.hpp"
#include "platform/view_tree/node_json.hpp"

namespace host {
namespace {

constexpr const char* homeAndClear = "\x1b[H\x1b[2J";

/// The board as it was last shown, and how it is shown again.
class Screen {
 public:
  Screen(Format format, std::string family) : format_(format), family_(std::move(family)) {}

  bool empty() const { return !view_; }
  bool shows(const platform::Node& view, BoardHolds holds) const { return view_ == view && holds_ == holds; }

  std::expected<void, std::string> show(platform::Node view, BoardHolds holds) {
    view_ = std::move(view);
    holds_ = holds;
    return draw();
  }

  /// Again, for a terminal that changed its width.
  std::expected<void, std::string> draw() {
    if (!view_) return {};
    switch (format_) {
      case Format::json:
        return writeStandardOutput(toJson(*view_).dump() + "\n");
      case Format::waybar:
        return writeStandardOutput(toWaybarJson(statusLine(*view_, holds_)) + "\n");
      default:
        return drawText();
    }
  }

  /// Before there is any board: a status bar must not stand blank.
  std::expected<void, std::string> showFailure(const std::string& message) {
    if (format_ != Format::waybar || view_) return {};
    const platform::Node sentence = platform::Node{.kind = platform::TextNode{.content = platform::Verbatim{message}}};
    return writeStandardOutput(toWaybarJson(statusLine(sentence, BoardHolds::sentence)) + "\n");
  }

 private:
  std::expected<void, std::string> drawText() {
    const auto options = terminalOptions(family_);
    std::string text = render::drawTerminalBoard(localised(*view_), options);
    if (options.escapes) return writeStandardOutput(homeAndClear + text);
    // Without escape sequences boards follow each other, parted by an empty line.
    const bool first = std::exchange(drawn_, true) == false;
    return writeStandardOutput(first ? text : "\n" + text);
  }

  Format format_;
  std::string family_;
  std::optional<platform::Node> view_;
  BoardHolds holds_ = BoardHolds::day;
  bool drawn_ = false;
};

class Watcher {
 public:
  Watcher(ExtensionSettings settings, const CommandLine& line)
      : extension_(withInterruption(std::move(settings), signals_)), line_(line), screen_(line.format, line.family) {}

  CommandResult run() {
    apply(reload());
    while (!ended_) {
      waitForAny({signals_.descriptor(), date_.descriptor(), pause_.descriptor(), midnight_.descriptor()});
      handleSignals();
      if (ended_) break;
      handleTimers();
    }
    return result_;
  }

 private:
  static ExtensionSettings withInterruption(ExtensionSettings settings, const SignalDescriptor& signals) {
    settings.interruption = signals.descriptor();
    return settings;
  }

  /// One timeline and its board; what to wait for next.
  Wait reload() {
    const auto timeline = load();
    if (!timeline) return failed(timeline.error());
    entry_ = entryAt(*timeline, absl::Now());
    const auto view = extension_.render(kind_, line_.family, entry_);
    if (!view) return failed(view.error());
    lastFailure_.clear();
    output(screen_.show(*view, holdingOf(entry_)));
    extension_.stop();
    return schedule_.loaded(absl::Now(), timeline->reload);
  }

  std::expected<TimelineAnswer, ExtensionFailure> load() {
    if (kind_.empty()) {
      const auto widgets = extension_.widgets();
      if (!widgets) return std::unexpected(widgets.error());
      for (const auto& widget : *widgets) {
        if (kind_.empty() && std::ranges::find(widget.families, line_.family) != widget.families.end())
          kind_ = widget.kind;
      }
      if (kind_.empty()) {
        return std::unexpected(
            ExtensionFailure{ExtensionFailure::Kind::cannotStart, "the extension offers no widget of this size"});
      }
    }
    return extension_.timeline(kind_, line_.family);
  }

  Wait failed(const ExtensionFailure& failure) {
    // Interrupted by a signal that is still to be read: a resized terminal asks again at once, the others end.
    if (failure.kind == ExtensionFailure::Kind::interrupted) return {.pause = absl::ZeroDuration()};
    extension_.stop();
    if (screen_.empty() && failure.kind == ExtensionFailure::Kind::cannotStart) {
      end(std::unexpected(CommandFailure{exit_status::noAnswer, failure.message}));
      return {};
    }
    if (failure.message != lastFailure_) std::fprintf(stderr, "vamba-host: %s\n", failure.message.c_str());
    lastFailure_ = failure.message;
    output(screen_.showFailure(failure.message));
    return schedule_.failed();
  }

  /// Rows' times and marks are of the moment of drawing: at midnight the last entry is drawn anew.
  void redraw() {
    const bool wasRunning = extension_.running();
    if (entry_.is_null()) return;
    const auto view = extension_.render(kind_, line_.family, entry_);
    if (view && !screen_.shows(*view, holdingOf(entry_))) output(screen_.show(*view, holdingOf(entry_)));
    if (!wasRunning) extension_.stop();
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

  void handleTimers() {
    const auto date = date_.take();
    const bool paused = pause_.take();
    const auto midnight = midnight_.take();
    if (date == RealTimeTimer::Event::due || paused) {
      apply(reload());
    } else if (date == RealTimeTimer::Event::clockSet || midnight == RealTimeTimer::Event::clockSet) {
      redraw();
      apply(schedule_.clockChanged(absl::Now()));
    } else if (midnight == RealTimeTimer::Event::due) {
      redraw();
      setMidnight();
    }
  }

  void apply(const Wait& wait) {
    wait.until ? date_.set(*wait.until) : date_.clear();
    wait.pause ? pause_.set(*wait.pause) : pause_.clear();
    setMidnight();
  }

  void setMidnight() {
    const platform::SystemClock clock;
    if (const auto next = clock.calendar().startOfDayAfter(clock.now(), 1)) midnight_.set(*next);
  }

  void output(const std::expected<void, std::string>& written) {
    if (!written) end(std::unexpected(CommandFailure{exit_status::noAnswer, written.error()}));
  }

  void end(CommandResult result) {
    ended_ = true;
    result_ = std::move(result);
  }

  SignalDescriptor signals_{SIGINT, SIGTERM, SIGHUP, SIGWINCH};
  ExtensionClient extension_;
  const CommandLine& line_;
  Screen screen_;
  ReloadSchedule schedule_;
  RealTimeTimer date_;
  RealTimeTimer midnight_;
  PauseTimer pause_;
  std::string kind_;
  nlohmann::json entry_;
  std::string lastFailure_;
  bool ended_ = false;
  CommandResult result_;
};

}  // namespace

CommandResult watch(const ExtensionSettings& settings, const CommandLine& line) {
  return Watcher(settings, line).run();
}

}  // namespace host
