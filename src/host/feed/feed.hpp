// Keeps the boards of a widget current: one timeline for any number of sizes, asked for again at its reload date, and
// drawn again (without loading) when the day, the time zone or the entry in force changes. A listener gets the boards.
//
//   Feed feed({.program = extension}, listener, time, recovery, Feed::Placeholders::none);
//   feed.show({family});  // the first load follows
//   while (true) {
//     waitForAny(feed.descriptors());
//     feed.handleWakeUps();
//   }
#pragma once

#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include <absl/time/time.h>

#include "host/extension/extension_client.hpp"
#include "host/recovery/recovery.hpp"
#include "host/schedule/reload_schedule.hpp"
#include "host/schedule/timekeeper.hpp"
#include "protocol/view_tree/node.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace host {

enum class BoardOrigin {
  placeholder,  ///< sample data, which must not be taken for the person's own
  load,         ///< a new timeline
  redraw,       ///< the entry that is known, seen at another time
};

/// What to show in each size that was asked for.
struct FeedBoards {
  std::map<protocol::WidgetFamily, protocol::Node> views;
  BoardHolds holds = BoardHolds::day;
  BoardOrigin origin = BoardOrigin::load;
};

/// When the next timeline is asked for; none while it is not known.
/// Reported as none when a load begins.
struct ReloadPlanned {
  std::optional<absl::Time> at;
};

/// What a feed reports, in the order in which it happens:
/// - the widget whose boards follow, once, before the first of them;
/// - boards that changed;
/// - a failure: the boards stay as they are, and the extension is asked again after a pause;
/// - when that will be.
using FeedNews = std::variant<WidgetDeclaration, FeedBoards, ExtensionFailure, ReloadPlanned>;

/// Called from within the feed's own calls.
using FeedListener = std::function<void(FeedNews)>;

/// Single-threaded around one poll(2), of whoever runs it: wait for `descriptors`, then call `handleWakeUps`.
class Feed {
 public:
  enum class Placeholders { none, untilLoaded };

  /// `time` and `recovery` must outlive the feed.
  Feed(ExtensionSettings settings, FeedListener listener, Timekeeper& time, Recovery& recovery,
       Placeholders placeholders);

  /// The sizes to show from now on. New ones are shown at once where something is there to show; the first timeline is
  /// asked for when there is a first size.
  void show(std::vector<protocol::WidgetFamily> families);

  /// What becomes readable when there is something to do; -1 may be among them.
  std::vector<int> descriptors() const;
  void handleWakeUps();

  /// The gallery's sample in every size of the widget. Sizes for which the extension fails, or is interrupted, are
  /// missing.
  FeedBoards previews();

  /// Asks for a timeline now, whatever the schedule says.
  void reload();

 private:
  using Result = std::expected<void, ExtensionFailure>;

  /// What to wait for after it.
  std::expected<Wait, ExtensionFailure> load();
  Result findWidget();
  Result showPlaceholders();
  Result draw(const Entry& entry, BoardOrigin origin);
  void redraw();
  void recover(const Recovery::Signs& signs);
  void failed(const ExtensionFailure& failure);
  void plan(const Wait& wait);
  void planRedraw();

  ExtensionClient extension_;
  FeedListener listener_;
  Timekeeper& time_;
  Recovery& recovery_;
  Placeholders placeholders_;
  ReloadSchedule schedule_;
  std::vector<protocol::WidgetFamily> families_;
  WidgetDeclaration widget_;                ///< with an empty kind until it is known
  std::optional<TimelineAnswer> timeline_;  ///< the last that came
  absl::Time lastDrawn_ = absl::InfinitePast();
  std::optional<absl::Time> planned_;                  ///< the next reload
  absl::Time lastCredentials_ = absl::InfinitePast();  ///< the last load that was planned for a sign of this kind
  absl::Time lastNetwork_ = absl::InfinitePast();
};

}  // namespace host
