// The widgets on the desktop: which copies are placed, what they show and how, and what a person asks of them. Brings
// placement, windows and the feed together and knows nothing that they know themselves.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/placement/arrangement.hpp"
#include "desktop/placement/placement_store.hpp"
#include "desktop/program/main_loop.hpp"
#include "desktop/windows/board_commands.hpp"
#include "desktop/windows/board_window.hpp"
#include "desktop/windows/gallery_window.hpp"
#include "desktop/windows/monitors.hpp"
#include "desktop/windows/theme.hpp"
#include "host/feed/feed_thread.hpp"

namespace desktop {

/// What a desktop tells a person, on standard error.
class Journal {
 public:
  explicit Journal(bool verbose) : verbose_(verbose) {}
  void say(const std::string& sentence) const;
  void sayIfVerbose(const std::string& sentence) const;
  bool verbose() const { return verbose_; }

 private:
  bool verbose_;
};

class Desktop final : public BoardCommands {
 public:
  struct Parts {
    MainLoop& loop;
    const Journal& journal;
    Theme& theme;
    SurfaceStyle style;
    std::optional<PlacementStore> store;  ///< none where the environment names no folder to keep placements in
  };

  Desktop(Parts parts, host::ExtensionSettings extension);
  ~Desktop() override;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// Shows what is placed; a medium widget on the first start. Once the toolkit is there. `shown` is called when the
  /// first frame is on the screen: what can wait begins then.
  void begin(std::function<void()> shown);

  void setLook(const BoardLook& look);
  void openGallery() override;

 private:
  Point snapped(int id, Point wanted) override;
  void moveTo(int id, Point origin) override;
  void step(int id, Direction direction) override;
  void resize(int id, const std::string& family) override;
  void remove(int id) override;
  void menuOpens() override { parts_.theme.use(); }
  void reload() override;
  std::optional<absl::Time> nextReload() const override { return nextReload_; }
  void quit() override { parts_.loop.quit(); }

  /// What the feed reports, on the main thread.
  void heard(const host::WidgetDeclaration& widget);
  void heard(const host::FeedBoards& boards);
  void heard(const host::ExtensionFailure& failure);
  void heard(const host::ReloadPlanned& planned) { nextReload_ = planned.at; }

  void add(const std::string& family);
  void placeFirst();
  void loadWhenShown(std::function<void()> shown);
  void monitorsSettleSoon();
  void monitorsChanged();
  void placementsChanged();
  void save();
  void arrangeWindows();
  void tidySoon();
  void sayWhenPainted(const std::string& sentence);
  void showPicture(int id, const std::string& family);
  void feedFamilies();
  void previewsCame(const host::FeedBoards& boards);
  void showPreviews();
  void closeGallery();
  void dropWindow(int id);

  std::vector<Monitor> monitorValues() const;
  const Arranged* arranged(int id) const;
  std::vector<Rect> others(int id) const;
  std::shared_ptr<BoardPicture> picture(const std::string& family);

  Parts parts_;
  host::Language language_;
  const Texts& texts_;
  BoardLook look_;
  Placements placements_;
  bool firstWidgetWanted_ = false;
  bool painted_ = false;  ///< some board has been on the screen
  bool loading_ = false;  ///< the first timeline was asked for
  std::vector<DisplayedMonitor> monitors_;
  std::optional<MonitorChanges> monitorChanges_;
  bool monitorsPending_ = false;
  std::vector<Arranged> arranged_;
  std::map<int, std::unique_ptr<BoardWindow>> windows_;
  std::unique_ptr<GalleryWindow> gallery_;
  std::map<std::string, BoardContent> previews_;                   ///< by family, while the gallery is open
  std::map<std::string, BoardContent> contents_;                   ///< by family, as last told by the feed
  std::map<std::string, std::shared_ptr<BoardPicture>> pictures_;  // shared by the copies of one size
  std::vector<std::string> fedFamilies_;                           ///< what the feed was last asked to show
  host::WidgetDeclaration widget_;
  std::optional<absl::Time> nextReload_;
  std::string lastFailure_;
  host::FeedThread feed_;  // last: it tells the others
};

}  // namespace desktop
