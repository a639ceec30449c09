// The boards of a widget, kept right: one timeline for any number of sizes, asked for again at its reload date, and
// drawn anew (without loading) when the day, the time zone or the entry in force changes. What is done with a board is
// its listener's.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include <absl/time/time.h>

#include "host/extension/extension_client.hpp"
#include "host/schedule/reload_schedule.hpp"
#include "host/schedule/wake_ups.hpp"
#include "host/schedule/zone_changes.hpp"
#include "host/status_line/status_line.hpp"
#include "protocol/view_tree/node.hpp"

namespace host {

enum class BoardOrigin {
  placeholder,  ///< sample data, which is not to be taken for the person's own
  load,         ///< a new timeline
  redraw,       ///< the entry that is known, seen at another time
};

/// What to show in each size that was asked for, by the sizes' names in the protocol.
struct FeedBoards {
  std::map<std::string, protocol::Node> views;
  BoardHolds holds = BoardHolds::day;
  BoardOrigin origin = BoardOrigin::load;
};

/// Called from within the feed's own calls.
class FeedListener {
 public:
  virtual ~FeedListener() = default;
  /// Which widget the boards are of; before the first of them.
  virtual void widgetFound(const WidgetDeclaration& widget) = 0;
  virtual void boardsChanged(const FeedBoards& boards) = 0;
  /// The boards stay as they are, and the extension is asked again after a pause.
  virtual void failed(const ExtensionFailure& failure) = 0;
  /// When the next timeline is asked for; none while it is not known.
  virtual void reloadPlanned(std::optional<absl::Time> reload) = 0;
};

/// Single-threaded around one poll(2), of whoever runs it: wait for `descriptors`, then call `handleWakeUps`.
class Feed {
 public:
  enum class Placeholders { none, untilLoaded };
  /// When the first timeline is asked for: as soon as there is a size to show it in, or at the first `reload`.
  enum class FirstLoad { atOnce, whenAskedFor };

  Feed(ExtensionSettings settings, FeedListener& listener, Placeholders placeholders,
       FirstLoad firstLoad = FirstLoad::atOnce);

  /// The sizes to show from now on. What can be shown at once of new ones is; the first timeline is asked for when
  /// there is a first size.
  void show(std::vector<std::string> families);

  /// What becomes readable when there is something to do.
  std::array<int, 4> descriptors() const;
  void handleWakeUps();

  /// The sample of the gallery in every size of the widget. Empty where the extension fails.
  FeedBoards previews();

  /// Asks for a timeline now, whatever the schedule says.
  void reload();

 private:
  using Failure = std::expected<void, ExtensionFailure>;

  /// What to wait for after it.
  std::expected<Wait, ExtensionFailure> load();
  Failure findWidget();
  Failure showPlaceholders();
  Failure draw(const nlohmann::json& entry, BoardOrigin origin);
  void redraw();
  void failed(const ExtensionFailure& failure);
  void plan(const Wait& wait);
  void planRedraw();

  ExtensionClient extension_;
  FeedListener& listener_;
  Placeholders placeholders_;
  FirstLoad firstLoad_;
  ReloadSchedule schedule_;
  RealTimeTimer date_;
  RealTimeTimer redraw_;  ///< the next midnight, or the next entry's date
  PauseTimer pause_;
  ZoneChanges zone_;
  std::vector<std::string> families_;
  WidgetDeclaration widget_;                ///< with an empty kind until it is known
  std::optional<TimelineAnswer> timeline_;  ///< the last that came
};

}  // namespace host
