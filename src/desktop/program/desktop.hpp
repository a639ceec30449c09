// The widgets on the desktop: brings together where they are, what they show, their windows, the gallery and the feed.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/placement/placement_saver.hpp"
#include "desktop/placement/widget_places.hpp"
#include "desktop/program/boards.hpp"
#include "desktop/program/gallery.hpp"
#include "desktop/program/journal.hpp"
#include "desktop/program/main_loop.hpp"
#include "desktop/windows/board_commands.hpp"
#include "desktop/windows/board_window.hpp"
#include "desktop/windows/monitors.hpp"
#include "host/feed/feed_thread.hpp"

namespace desktop {

class Desktop final : public BoardCommands {
 public:
  struct Parts {
    MainLoop& loop;
    const Journal& journal;
    DisplayWay way;
    LoadedPlacements placements;
    PlacementSaver* saver = nullptr;  ///< null where the environment names no folder to keep placements in
  };

  Desktop(Parts parts, host::ExtensionSettings extension);
  ~Desktop() override;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// Shows what is placed; a medium widget on the first start.
  void begin();

  void setLook(const BoardLook& look);
  /// How large text is beside the usual size: boards are as many times larger.
  void setTextScale(double scale);
  void openGallery() override;

 private:
  Point snapped(int id, Point wanted) override { return places_.snapped(id, wanted); }
  void moveTo(int id, Point origin) override;
  void step(int id, Direction direction) override;
  void resize(int id, protocol::WidgetFamily family) override;
  void remove(int id) override;
  void reload() override;
  std::optional<absl::Time> nextReload() const override { return nextReload_; }
  void quit() override { parts_.loop.quit(); }

  /// What the feed reports, on the main thread.
  void heard(const host::WidgetDeclaration& widget);
  void heard(const host::FeedBoards& boards);
  void heard(const host::ExtensionFailure& failure);
  void heard(const host::ReloadPlanned& planned) { nextReload_ = planned.at; }

  Size sizeOf(protocol::WidgetFamily family) const;
  void add(protocol::WidgetFamily family);
  void galleryClosed();
  void monitorsSettleSoon();
  void monitorsChanged();
  void placesChanged();
  void save();
  void arrangeWindows();
  void showPicture(const Placed& placed);
  void feedFamilies();
  void dropWindow(int id);

  Parts parts_;
  host::Language language_;
  const Texts& texts_;
  double textScale_ = 1;
  WidgetPlaces places_;
  bool firstWidgetWanted_;
  Boards boards_;
  std::vector<DisplayedMonitor> monitors_;
  std::optional<MonitorChanges> monitorChanges_;
  bool monitorsPending_ = false;
  std::map<int, std::unique_ptr<BoardWindow>> windows_;
  Gallery gallery_;
  std::vector<protocol::WidgetFamily> fedFamilies_;  ///< what the feed was last asked to show
  host::WidgetDeclaration widget_;
  std::optional<absl::Time> nextReload_;
  std::string lastFailure_;
  host::FeedThread feed_;  // last: it tells the others
};

}  // namespace desktop
