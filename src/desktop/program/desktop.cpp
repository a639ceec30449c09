#include "desktop/program/desktop.hpp"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include <absl/strings/str_cat.h>
#include <absl/time/clock.h>

#include "desktop/windows/toolkit_look.hpp"

namespace desktop {
namespace {

/// The size of the widget that the first start places.
constexpr protocol::WidgetFamily firstFamily = protocol::WidgetFamily::systemMedium;

render::Backdrop backdropOf(Background background) {
  switch (background) {
    case Background::translucent:
      return render::Backdrop::translucent;
    case Background::none:
      return render::Backdrop::none;
    case Background::solid:
      break;
  }
  return render::Backdrop::solid;
}

}  // namespace

Desktop::Desktop(Parts parts, host::ExtensionSettings extension)
    : parts_(std::move(parts)),
      language_(host::userLanguage()),
      texts_(textsFor(language_)),
      settings_(parts_.loaded.state.settings),
      loginStart_(parts_.messages),
      places_(std::move(parts_.loaded.state.placements),
              [this](protocol::WidgetFamily family) { return sizeOf(family); }),
      firstWidgetWanted_(places_.empty() && (parts_.loaded.firstStart || parts_.loaded.notice)),
      boards_(language_),
      keyboard_(
          parts_.way, windows_, [this] { return allWindows(); }, places_),
      gallery_(texts_, {.add = [this](protocol::WidgetFamily family) { add(family); },
                        .undoRemoval = [this] { undoRemoval(); },
                        .closed = [this] { quitIfNothingIsLeft(); }}),
      feed_(
          std::move(extension),
          [this](host::FeedNews news) {
            MainLoop::post(
                [this, news = std::move(news)] { std::visit([this](const auto& each) { heard(each); }, news); });
          },
          host::Feed::Placeholders::untilLoaded) {}

Desktop::~Desktop() = default;

void Desktop::begin() {
  monitorChanges_.emplace([this] { monitorsSettleSoon(); });
  monitorsChanged();
  feedFamilies();
  constexpr absl::Duration tooLong = absl::Seconds(2);
  MainLoop::postAfter(tooLong, [this] {
    for (const auto& [id, window] : windows_) {
      if (window && places_.arranged(id) != nullptr) window->askToBeShown();
    }
  });
  // Without any window, the program would seem not to have started.
  if (places_.empty() && !firstWidgetWanted_) openGallery();
}

void Desktop::monitorsSettleSoon() {
  if (std::exchange(monitorsPending_, true)) return;
  MainLoop::postWhenIdle([this] {
    monitorsPending_ = false;
    monitorsChanged();
  });
}

void Desktop::monitorsChanged() {
  monitors_ = displayedMonitors(parts_.way);
  std::vector<Monitor> values;
  for (const auto& [monitor, handle] : monitors_) {
    const auto& [identity, area, primary] = monitor;
    parts_.messages.sayIfVerbose(absl::StrCat("monitor ", identity.make, " ", identity.model, " ", identity.serial,
                                              " at ", identity.connector, ": ", area.width, "x", area.height, "+",
                                              area.x, "+", area.y));
    values.push_back(monitor);
  }
  places_.setMonitors(std::move(values));
  if (firstWidgetWanted_ && places_.add(widget_.kind, firstFamily)) {
    firstWidgetWanted_ = false;
    save();
    feedFamilies();
  }
  arrangeWindows();
}

void Desktop::arrangeWindows() {
  for (const auto& placed : places_.all()) {
    const auto* const where = places_.arranged(placed.id);
    auto& window = windows_[placed.id];
    if (where == nullptr) {
      if (window) window->hide();
      continue;
    }
    if (!window) {
      window = std::make_unique<BoardWindow>(placed.id, parts_.way, *this, texts_);
      window->setTooltip(reloadTooltip(texts_, reloads_, absl::Now()));
    }
    showPicture(placed);
    window->place(surfacePlace(where->rect, where->monitor));
    // Where another board has taken the place of a removed one, only the keyboard and the menu undo that.
    for (const auto& removed : removed_) {
      if (removed.window && overlap(removed.rect, where->rect)) removed.window->hide();
    }
  }
}

SurfacePlace Desktop::surfacePlace(const Rect& rect, std::size_t monitor) const {
  const auto& [known, handle] = monitors_[monitor];
  return {.monitor = handle.get(),
          .size = rect.size(),
          .origin = rect.origin(),
          .onMonitor = {rect.x - known.area.x, rect.y - known.area.y}};
}

std::vector<SurfacePlace> Desktop::placesAt(int id, Point origin) {
  std::vector<SurfacePlace> places;
  const auto* const where = places_.arranged(id);
  if (where == nullptr) return places;
  const Rect rect = rectAt(origin, where->rect.size());
  for (std::size_t i = 0; i < monitors_.size(); ++i) {
    if (overlap(rect, monitors_[i].monitor.area)) places.push_back(surfacePlace(rect, i));
  }
  return places;
}

void Desktop::showPicture(const Placed& placed) {
  if (const auto window = windows_.find(placed.id); window != windows_.end() && window->second) {
    window->second->show(boards_.picture(placed.family), widget_.displayName.empty() ? "Vamba" : widget_.displayName);
  }
}

void Desktop::heard(const host::WidgetDeclaration& widget) {
  widget_ = widget;
  gallery_.describe(widget);
  if (places_.nameKind(widget.kind)) save();
}

void Desktop::heard(const host::FeedBoards& boards) {
  lastFailure_.clear();
  const auto redaction =
      boards.origin == host::BoardOrigin::placeholder ? render::Redaction::placeholder : render::Redaction::none;
  for (const auto& [family, view] : boards.views) {
    if (!boards_.setContent(family, view, redaction)) continue;
    for (const auto& placed : places_.all()) {
      if (placed.family == family) showPicture(placed);
    }
  }
  const bool loaded = boards.origin == host::BoardOrigin::load;
  if (loaded && boards.holds == host::BoardHolds::day) reloads_.last = absl::Now();
  reloadsChanged();
  if (loaded) parts_.messages.sayIfVerbose("a new timeline is shown");
}

void Desktop::heard(const host::ReloadPlanned& planned) {
  reloads_.next = planned.at;
  reloadsChanged();
}

/// Called with each report of the feed, since the lines have to show a date once their day is over.
void Desktop::reloadsChanged() {
  const std::string tooltip = reloadTooltip(texts_, reloads_, absl::Now());
  for (const auto& [id, window] : windows_) {
    if (window) window->setTooltip(tooltip);
  }
}

void Desktop::heard(const host::ExtensionFailure& failure) {
  if (std::exchange(lastFailure_, failure.message) != failure.message) parts_.messages.say(failure.message);
}

void Desktop::keepAboveShownDesktop(bool shown) {
  for (auto* const window : allWindows()) window->keepAboveShownDesktop(shown);
}

void Desktop::setLook(const BoardLook& look) {
  systemLook_ = look;
  applyLook();
}

void Desktop::applyLook() {
  BoardLook look = systemLook_;
  if (settings_.scheme != Scheme::system) {
    look.appearance = settings_.scheme == Scheme::dark ? render::Appearance::dark : render::Appearance::light;
  }
  look.backdrop = backdropOf(settings_.background);
  useAppearance(look.appearance);
  if (!boards_.setLook(look)) return;
  for (const auto& placed : places_.all()) showPicture(placed);
  gallery_.setLook(boards_.look());
}

void Desktop::setTextScale(double scale) {
  if (std::exchange(textScale_, scale) == scale) return;
  places_.sizesChanged();
  arrangeWindows();
  gallery_.setTextScale(scale);
}

Size Desktop::sizeOf(protocol::WidgetFamily family) const {
  const auto size = render::familyForm(family).size;
  const auto scaled = [this](double length) { return static_cast<int>(std::lround(length * textScale_)); };
  return {scaled(size.width), scaled(size.height)};
}

void Desktop::moveTo(int id, Point origin) {
  if (places_.moveTo(id, origin)) placesChanged();
}

void Desktop::step(int id, Direction direction) {
  if (places_.step(id, direction)) placesChanged();
}

void Desktop::resize(int id, protocol::WidgetFamily family) {
  if (places_.resize(id, family)) placesChanged();
}

void Desktop::zoom(int id, int percent) {
  if (places_.zoom(id, percent)) placesChanged();
}

void Desktop::choose(const DesktopSettings& settings) {
  if (std::exchange(settings_, settings) == settings) return;
  save();
  applyLook();
}

MenuState Desktop::menuState(int id) const {
  const auto* const placed = places_.placements().find(id);
  if (placed == nullptr) return {};
  return {.family = placed->family,
          .zoom = placed->zoom,
          .canOpen = !widget_.opens.empty(),
          .reloads = reloads_,
          .settings = settings_,
          .canUndoRemoval = !removed_.empty()};
}

void Desktop::add(protocol::WidgetFamily family) {
  if (!places_.add(widget_.kind, family)) return;
  placesChanged();
  gallery_.announceAdded(places_.all().back().place.corner);
}

void Desktop::remove(int id) {
  const auto all = places_.all();
  const auto found = std::ranges::find(all, id, &Placed::id);
  if (found == all.end()) return;
  const auto* const where = places_.arranged(id);
  const int removal = ++removals_;
  removed_.push_back({.removal = removal,
                      .placed = *found,
                      .position = static_cast<std::size_t>(found - all.begin()),
                      .rect = where == nullptr ? Rect{} : where->rect,
                      .window = nullptr});
  if (auto window = windows_.extract(id); !window.empty() && window.mapped()) {
    // The button's own handler may be running when it is called.
    window.mapped()->offerUndo([this, removal] { MainLoop::post([this, removal] { undo(removal); }); });
    removed_.back().window = std::move(window.mapped());
  }
  constexpr absl::Duration undoable = absl::Seconds(10);
  MainLoop::postAfter(undoable, [this, removal] { finish(removal); });
  places_.remove(id);
  placesChanged();
  if (places_.empty()) openGallery();
}

void Desktop::undoRemoval() {
  if (!removed_.empty()) undo(removed_.back().removal);
}

void Desktop::undo(int removal) {
  const auto found = std::ranges::find(removed_, removal, &Removed::removal);
  if (found == removed_.end()) return;
  Removed removed = std::move(*found);
  removed_.erase(found);
  const auto id = places_.restore(removed.placed, removed.position);
  if (id == removed.placed.id && removed.window) {
    removed.window->withdrawUndo();
    windows_[*id] = std::move(removed.window);
  }
  destroyLater(std::move(removed.window));
  placesChanged();
}

void Desktop::finish(int removal) {
  const auto found = std::ranges::find(removed_, removal, &Removed::removal);
  if (found == removed_.end()) return;
  destroyLater(std::move(found->window));
  removed_.erase(found);
  if (!gallery_.isOpen()) quitIfNothingIsLeft();
}

/// One of the window's own handlers may be running, so it is hidden now and destroyed after they have returned.
void Desktop::destroyLater(std::unique_ptr<BoardWindow> window) {
  if (!window) return;
  window->hide();
  MainLoop::postWhenIdle([doomed = std::shared_ptr<BoardWindow>(std::move(window))] {});
  // It is destroyed before it could report that it has lost the focus.
  keyboard_.activeChanged();
}

std::vector<BoardWindow*> Desktop::allWindows() const {
  std::vector<BoardWindow*> all;
  for (const auto& [id, window] : windows_) {
    if (window) all.push_back(window.get());
  }
  for (const auto& removed : removed_) {
    if (removed.window) all.push_back(removed.window.get());
  }
  return all;
}

void Desktop::placesChanged() {
  save();
  arrangeWindows();
  feedFamilies();
}

void Desktop::save() {
  // A copy that was placed before the widget's kind was known is saved only when it is.
  const bool nameless = std::ranges::any_of(places_.all(), [](const Placed& placed) { return placed.kind.empty(); });
  if (parts_.saver != nullptr && !nameless) parts_.saver->save({places_.placements(), settings_});
}

void Desktop::feedFamilies() {
  std::set<protocol::WidgetFamily> families;
  for (const auto& placed : places_.all()) families.insert(placed.family);
  // A post interrupts a load, so nothing is posted unless the sizes have changed.
  std::vector wanted(families.begin(), families.end());
  if (std::exchange(fedFamilies_, wanted) == wanted) return;
  feed_.post([wanted = std::move(wanted)](host::Feed& feed) { feed.show(wanted); });
}

void Desktop::reload() {
  reloads_.next.reset();
  reloadsChanged();
  feed_.post([](host::Feed& feed) { feed.reload(); });
}

void Desktop::open(std::uint32_t time) {
  keyboard_.makeWay();
  parts_.opening.open(widget_.opens, time);
}

void Desktop::openGallery() {
  keyboard_.makeWay();
  parts_.messages.sayIfVerbose("the gallery opens");
  if (!gallery_.isOpen()) {
    feed_.post([this](host::Feed& feed) {
      MainLoop::post([this, boards = feed.previews()] { gallery_.showPreviews(boards, language_, boards_.look()); });
    });
  }
  gallery_.open(widget_);
}

void Desktop::focusBoards() {
  if (!keyboard_.begin()) openGallery();
}

void Desktop::quitIfNothingIsLeft() {
  if (places_.empty() && removed_.empty() && !firstWidgetWanted_) quit();
}

}  // namespace desktop
