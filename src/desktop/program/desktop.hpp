// The widgets on the desktop. Connects their places, their contents, their windows, the gallery and the feed.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/placement/placement_saver.hpp"
#include "desktop/placement/widget_places.hpp"
#include "desktop/program/boards.hpp"
#include "desktop/program/gallery.hpp"
#include "desktop/program/keyboard_focus.hpp"
#include "desktop/program/login_start.hpp"
#include "desktop/program/main_loop.hpp"
#include "desktop/program/messages.hpp"
#include "desktop/program/opening.hpp"
#include "desktop/windows/board_commands.hpp"
#include "desktop/windows/board_window.hpp"
#include "desktop/windows/monitors.hpp"
#include "host/feed/feed_thread.hpp"

namespace desktop {

class Desktop final : public BoardCommands {
 public:
  struct Parts {
    MainLoop& loop;
    const Messages& messages;
    const Opening& opening;
    DisplayWay way;
    LoadedPlacements loaded;
    PlacementSaver* saver = nullptr;  ///< null if the environment names no folder to save placements in
  };

  Desktop(Parts parts, host::ExtensionSettings extension);
  ~Desktop() override;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  /// Shows the placed widgets. The first start places a medium one.
  void begin();

  /// The look that the desktop's settings ask for. The person's own settings override it.
  void setLook(const BoardLook& look);
  /// For a compositor whose "show desktop" covers the bottom layer.
  void keepAboveShownDesktop(bool shown);
  /// The size of text relative to the usual one. Boards grow by the same factor.
  void setTextScale(double scale);
  void openGallery() override;
  /// Brings the boards to the front and focuses the first, or opens the gallery if there is none.
  void focusBoards();

 private:
  Point landing(int id, Point wanted, Snapping snapping) override { return places_.landing(id, wanted, snapping); }
  std::vector<SurfacePlace> placesAt(int id, Point origin) override;
  void moveTo(int id, Point origin) override;
  void step(int id, Direction direction) override;
  void resize(int id, protocol::WidgetFamily family) override;
  void remove(int id) override;
  void undoRemoval() override;
  void open(std::uint32_t time) override;
  void reload() override;
  void zoom(int id, int percent) override;
  void choose(const DesktopSettings& settings) override;
  void startAtLogin(bool wanted) override { loginStart_.set(wanted); }
  bool startsAtLogin() const override { return loginStart_.isOn(); }
  MenuState menuState(int id) const override;
  bool locked() const override { return settings_.locked; }
  void quit() override { parts_.loop.quit(); }
  void focusNext(int id, Turn turn) override { keyboard_.next(id, turn); }
  void leaveKeyboard() override { keyboard_.end(); }
  void activeChanged() override { keyboard_.activeChanged(); }

  // Called on the main thread with each report of the feed.
  void heard(const host::WidgetDeclaration& widget);
  void heard(const host::FeedBoards& boards);
  void heard(const host::ExtensionFailure& failure);
  void heard(const host::ReloadPlanned& planned);

  Size sizeOf(protocol::WidgetFamily family) const;
  void add(protocol::WidgetFamily family);
  /// Without a board, an undo button or the gallery, nobody could use the program.
  void quitIfNothingIsLeft();
  void reloadsChanged();
  void applyLook();
  void monitorsSettleSoon();
  void monitorsChanged();
  void placesChanged();
  void save();
  void arrangeWindows();
  SurfacePlace surfacePlace(const Rect& rect, std::size_t monitor) const;
  void showPicture(const Placed& placed);
  void feedFamilies();
  void undo(int removal);
  void finish(int removal);
  void destroyLater(std::unique_ptr<BoardWindow> window);
  /// Also those of the removed copies that can still be brought back.
  std::vector<BoardWindow*> allWindows() const;

  /// A copy that can still be brought back. It is no longer among the places, so a program that ends has removed it.
  struct Removed {
    int removal;  ///< counts removals
    Placed placed;
    std::size_t position;
    Rect rect;
    std::unique_ptr<BoardWindow> window;  ///< with a button; null if the copy was not shown
  };

  Parts parts_;
  host::Language language_;
  const Texts& texts_;
  double textScale_ = 1;
  DesktopSettings settings_;
  BoardLook systemLook_;
  LoginStart loginStart_;
  WidgetPlaces places_;
  bool firstWidgetWanted_;
  Boards boards_;
  std::vector<DisplayedMonitor> monitors_;
  std::optional<MonitorChanges> monitorChanges_;
  bool monitorsPending_ = false;
  KeyboardFocus::Windows windows_;
  std::vector<Removed> removed_;
  KeyboardFocus keyboard_;
  int removals_ = 0;
  Gallery gallery_;
  std::vector<protocol::WidgetFamily> fedFamilies_;  ///< the sizes that the feed was last asked for
  host::WidgetDeclaration widget_;
  ReloadTimes reloads_;
  std::string lastFailure_;
  host::FeedThread feed_;  // last, since its thread calls into the other members
};

}  // namespace desktop
