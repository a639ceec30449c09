#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <optional>
#include <string_view>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "host/command_line/outcome.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"
#include "host/commands/terminal.hpp"
#include "host/diagnostics/diagnostics.hpp"
#include "host/feed/feed.hpp"
#include "host/recovery/recovery.hpp"
#include "host/schedule/wake_ups.hpp"

namespace host {
namespace {

constexpr const char* homeAndClear = "\x1b[H\x1b[2J";

/// Whether standard output is a pipe, socket or terminal whose other end is closed.
bool readerGone() {
  pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
  return poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

/// The board as it was last shown, and what is written to show it.
class Screen {
 public:
  explicit Screen(const CommandLine& line) : line_(line) {}

  bool empty() const { return !board_; }
  bool shows(const protocol::Node& view, BoardHolds holds) const {
    return board_ && board_->view == view && board_->holds == holds;
  }

  DrawnBoard show(protocol::Node view, BoardHolds holds) {
    board_ = Board{.view = std::move(view), .title = {}, .holds = holds};
    return draw();
  }

  /// Again, for a terminal that changed its width.
  DrawnBoard draw() {
    if (!board_) return {};
    auto drawn = drawText(*board_, line_);
    if (!drawn || line_.format != Format::text) return drawn;
    if (terminalOptions(line_.family).escapes) return homeAndClear + *drawn;
    // Without escape sequences boards follow each other, with an empty line between them.
    const bool first = !std::exchange(drawn_, true);
    return first ? drawn : "\n" + *drawn;
  }

  /// Before there is any board: a status bar must not stay blank.
  DrawnBoard showFailure(const std::string& message) const {
    if ((line_.format != Format::waybar && line_.format != Format::line) || board_) return {};
    const protocol::Node sentence{.kind = protocol::TextNode{.content = protocol::Verbatim{message}}};
    return drawText({.view = sentence, .title = {}, .holds = BoardHolds::sentence}, line_);
  }

 private:
  const CommandLine& line_;
  std::optional<Board> board_;
  bool drawn_ = false;
};

class Watcher {
 public:
  Watcher(ExtensionSettings settings, const CommandLine& line)
      : line_(line),
        screen_(line),
        feed_(
            withInterruption(std::move(settings), interruption_), [this](const FeedNews& news) { hear(news); }, time_,
            recovery_, Feed::Placeholders::none) {
    interruption_.add(endings_.descriptor());
    interruption_.add(requests_.descriptor());
    interruption_.addForItsEnd(STDOUT_FILENO);
  }

  CommandResult run() {
    if (!time_.works() || !endings_.works() || !requests_.works() || !interruption_.works()) {
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
    say(Priority::debug, "next reload at " + inLocalTime(*planned.at));
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
    if (endings_.take() != 0) return end({});
    while (const int signal = requests_.take()) {
      if (signal == SIGUSR1) feed_.reload();
      if (signal == SIGWINCH && onTerminal() && line_.format == Format::text) output(screen_.draw());
    }
  }

  /// Writes it, unless a signal asks to end first: a reader that does not read must not keep this program.
  void output(const DrawnBoard& drawing) {
    if (!drawing) return end(std::unexpected(CommandFailure{exit_status::noAnswer, drawing.error()}));
    // What is ready for writing takes a piece of this size without blocking (pipe(7)).
    for (std::string_view rest = *drawing; !ended_ && !rest.empty(); rest.remove_prefix(std::min(rest.size(), piece))) {
      if (endBeforeWriting()) return end({});
      const auto written = writeStandardOutput(rest.substr(0, piece));
      if (written) continue;
      // When a status bar ends, its pipe closes; that is not a failure of ours.
      if (readerGone()) return end({});
      end(std::unexpected(CommandFailure{exit_status::noAnswer, written.error()}));
    }
  }

  /// Waits until standard output takes more; true where a signal asks to end.
  bool endBeforeWriting() {
    std::array<pollfd, 2> entries{pollfd{.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0},
                                  pollfd{.fd = endings_.descriptor(), .events = POLLIN, .revents = 0}};
    while (poll(entries.data(), entries.size(), -1) < 0 && errno == EINTR) {
    }
    return entries[1].revents != 0 && endings_.take() != 0;
  }

  void end(CommandResult result) {
    ended_ = true;
    result_ = std::move(result);
  }

  static constexpr std::size_t piece = PIPE_BUF;

  SignalDescriptor endings_{SIGINT, SIGTERM, SIGHUP};
  SignalDescriptor requests_{SIGWINCH, SIGUSR1};
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
