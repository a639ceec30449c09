#include "desktop/program/desktop.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>
#include <utility>

#include <absl/strings/str_cat.h>
#include <malloc.h>

#include "desktop/windows/loading_board.hpp"

namespace desktop {
namespace {

/// What is placed where nothing is yet.
constexpr const char* firstFamily = "systemMedium";
constexpr const render::BoardForm& firstForm = render::mediumFamily;

Size sizeOfForm(const render::BoardForm& form) {
  return {static_cast<int>(std::lround(form.size.width)), static_cast<int>(std::lround(form.size.height))};
}

std::optional<Size> sizeOf(std::string_view family) { return render::familyForm(family).transform(sizeOfForm); }

void tell(const std::string& sentence) { std::fprintf(stderr, "vamba-host: %s\n", sentence.c_str()); }

}  // namespace

void Journal::say(const std::string& sentence) const { tell(sentence); }

void Journal::sayIfVerbose(const std::string& sentence) const {
  if (verbose_) tell(sentence);
}

Desktop::Desktop(Parts parts, host::ExtensionSettings extension)
    : parts_(std::move(parts)),
      language_(host::userLanguage()),
      texts_(textsFor(language_)),
      feed_(
          std::move(extension),
          [this](host::FeedNews news) {
            MainLoop::post(
                [this, news = std::move(news)] { std::visit([this](const auto& each) { heard(each); }, news); });
          },
          host::Feed::Placeholders::untilLoaded, host::Feed::FirstLoad::whenAskedFor) {
  look_.language = host::languageTag(language_);
  if (parts_.store) {
    auto loaded = parts_.store->load();
    if (loaded.notice) parts_.journal.say(*loaded.notice);
    placements_ = std::move(loaded.placements);
    firstWidgetWanted_ = placements_.empty() && (loaded.firstStart || loaded.notice);
  } else {
    firstWidgetWanted_ = true;
  }
  // The extension starts while the toolkit does.
  if (firstWidgetWanted_) {
    fedFamilies_ = {firstFamily};
    feed_.post([](host::Feed& feed) { feed.show({firstFamily}); });
  } else {
    feedFamilies();
  }
}

Desktop::~Desktop() = default;

void Desktop::heard(const host::WidgetDeclaration& widget) {
  widget_ = widget;
  if (gallery_) gallery_->describe(widget);
  bool named = false;
  for (const auto& placed : std::vector(placements_.all().begin(), placements_.all().end())) {
    if (!placed.kind.empty()) continue;
    placements_.setKind(placed.id, widget.kind);
    named = true;
  }
  if (named) save();
}

void Desktop::begin(std::function<void()> shown) {
  monitorChanges_.emplace([this] { monitorsSettleSoon(); });
  monitorsChanged();
  sayWhenPainted("the first frame is shown");
  loadWhenShown(std::move(shown));
  // A program without a window would seem to do nothing.
  if (placements_.empty() && !firstWidgetWanted_) openGallery();
}

/// The placeholder is on the screen before the load takes processors from it; where nothing is painted, a moment later.
void Desktop::loadWhenShown(std::function<void()> shown) {
  const auto load = [this, shown = std::move(shown)] {
    if (std::exchange(loading_, true)) return;
    // The extension's own placeholder may be on its way.
    feed_.postInTurn([](host::Feed& feed) { feed.reload(); });
    shown();
  };
  constexpr absl::Duration atLast = absl::Milliseconds(300);
  MainLoop::postAfter(atLast, load);
  if (windows_.empty() || !windows_.begin()->second) return;
  windows_.begin()->second->whenPainted([this, load] {
    painted_ = true;
    load();
  });
  constexpr absl::Duration tooLong = absl::Seconds(2);
  MainLoop::postAfter(tooLong, [this] {
    if (painted_) return;
    for (const auto& [id, window] : windows_) {
      if (window && arranged(id) != nullptr) window->askToBeShown();
    }
  });
}

void Desktop::monitorsSettleSoon() {
  if (std::exchange(monitorsPending_, true)) return;
  MainLoop::postWhenIdle([this] {
    monitorsPending_ = false;
    monitorsChanged();
  });
}

void Desktop::monitorsChanged() {
  monitors_ = displayedMonitors(parts_.style.way);
  for (const auto& [monitor, handle] : monitors_) {
    const auto& area = monitor.area;
    parts_.journal.sayIfVerbose(absl::StrCat("monitor ", monitor.identity.make, " ", monitor.identity.model, " ",
                                             monitor.identity.serial, " at ", monitor.identity.connector, ": ",
                                             area.width, "x", area.height, "+", area.x, "+", area.y));
  }
  if (firstWidgetWanted_) placeFirst();
  arrangeWindows();
}

void Desktop::placeFirst() {
  const auto place = placeForNew(sizeOfForm(firstForm), placements_, monitorValues(), sizeOf);
  if (!place) return;
  firstWidgetWanted_ = false;
  placements_.add(widget_.kind, firstFamily, *place);
  save();
}

void Desktop::arrangeWindows() {
  const auto values = monitorValues();
  arranged_ = arrange(placements_, values, sizeOf);
  for (const auto& placed : placements_.all()) {
    const auto* const where = arranged(placed.id);
    auto& window = windows_[placed.id];
    if (where == nullptr) {
      if (window) window->hide();
      continue;
    }
    if (!window) window = std::make_unique<BoardWindow>(placed.id, parts_.style, *this, texts_);
    showPicture(placed.id, placed.family);
    const Rect& area = values[where->monitor].area;
    window->place({.monitor = monitors_[where->monitor].handle,
                   .origin = where->rect.origin(),
                   .onMonitor = {where->rect.x - area.x, where->rect.y - area.y}});
  }
}

void Desktop::showPicture(int id, const std::string& family) {
  if (const auto window = windows_.find(id); window != windows_.end() && window->second) {
    window->second->show(picture(family), widget_.displayName.empty() ? "Vamba" : widget_.displayName);
  }
}

std::shared_ptr<BoardPicture> Desktop::picture(const std::string& family) {
  auto& picture = pictures_[family];
  const auto content = contents_.find(family);
  if (!picture) {
    picture =
        std::make_shared<BoardPicture>(family, content == contents_.end() ? loadingBoard() : content->second, look_);
  }
  return picture;
}

void Desktop::heard(const host::FeedBoards& boards) {
  lastFailure_.clear();
  const auto redaction =
      boards.origin == host::BoardOrigin::placeholder ? render::Redaction::placeholder : render::Redaction::none;
  for (const auto& [family, view] : boards.views) {
    BoardContent content{.view = host::localised(view, language_), .redaction = redaction};
    const auto known = contents_.find(family);
    if (known != contents_.end() && known->second == content) continue;
    contents_.insert_or_assign(family, std::move(content));
    pictures_.erase(family);
    for (const auto& placed : placements_.all()) {
      if (placed.family == family) showPicture(placed.id, family);
    }
  }
  if (boards.origin == host::BoardOrigin::load) {
    sayWhenPainted("a new timeline is shown");
    tidySoon();
  }
}

/// What the start, a gallery or a load freed goes back to the system, once a quarter of an hour and not at once.
void Desktop::tidySoon() {
  MainLoop::postAfter(absl::Seconds(1), [] { malloc_trim(0); });
}

/// For who measures.
void Desktop::sayWhenPainted(const std::string& sentence) {
  if (!parts_.journal.verbose() || windows_.empty() || !windows_.begin()->second) return;
  windows_.begin()->second->whenPainted([this, sentence] { parts_.journal.say(sentence); });
}

void Desktop::heard(const host::ExtensionFailure& failure) {
  if (std::exchange(lastFailure_, failure.message) != failure.message) parts_.journal.say(failure.message);
}

void Desktop::setLook(const BoardLook& look) {
  BoardLook wanted = look;
  wanted.language = look_.language;
  if (wanted == look_) return;
  look_ = std::move(wanted);
  pictures_.clear();
  for (const auto& placed : placements_.all()) showPicture(placed.id, placed.family);
  if (gallery_) showPreviews();
}

Point Desktop::snapped(int id, Point wanted) {
  const auto* const where = arranged(id);
  if (where == nullptr) return wanted;
  const Rect rect = rectAt(wanted, where->rect.size());
  const auto values = monitorValues();
  const auto monitor = monitorUnder(rect, values);
  return monitor ? snappedOrigin(rect, others(id), values[*monitor].area) : wanted;
}

void Desktop::moveTo(int id, Point origin) {
  const auto* const where = arranged(id);
  if (where == nullptr) return;
  const Rect rect = rectAt(origin, where->rect.size());
  const auto values = monitorValues();
  const auto monitor = monitorUnder(rect, values);
  if (!monitor) return;
  placements_.setPlace(id, placeOf(rect, values[*monitor]));
  placementsChanged();
}

void Desktop::step(int id, Direction direction) {
  const auto* const where = arranged(id);
  if (where == nullptr) return;
  moveTo(id, steppedOrigin(where->rect, direction, monitors_[where->monitor].monitor.area));
}

void Desktop::resize(int id, const std::string& family) {
  const auto* const where = arranged(id);
  const auto* const placed = placements_.find(id);
  const auto size = sizeOf(family);
  if (where == nullptr || placed == nullptr || placed->family == family || !size) return;
  // It grows from the corner by which it is placed, and stays on its monitor.
  const auto& monitor = monitors_[where->monitor].monitor;
  const Place place = placeOf(where->rect, monitor);
  const Point origin = clampedOrigin(rectAt(originOf(place, *size, monitor.area), *size), monitor.area);
  placements_.setFamily(id, family);
  placements_.setPlace(id, placeOf(rectAt(origin, *size), monitor));
  placementsChanged();
}

void Desktop::remove(int id) {
  placements_.remove(id);
  dropWindow(id);
  placementsChanged();
  if (placements_.empty()) openGallery();
}

/// A window's own handlers may be running: it is hidden now and destroyed when they have returned.
void Desktop::dropWindow(int id) {
  auto window = windows_.extract(id);
  if (window.empty()) return;
  window.mapped()->hide();
  MainLoop::postWhenIdle([doomed = std::shared_ptr<BoardWindow>(std::move(window.mapped()))] {});
}

void Desktop::add(const std::string& family) {
  const auto size = sizeOf(family);
  if (!size) return;
  if (const auto place = placeForNew(*size, placements_, monitorValues(), sizeOf)) {
    placements_.add(widget_.kind, family, *place);
    placementsChanged();
  }
}

void Desktop::placementsChanged() {
  save();
  arrangeWindows();
  feedFamilies();
}

void Desktop::save() {
  // A copy that was placed before the widget's name was known is kept once it is.
  const bool nameless =
      std::ranges::any_of(placements_.all(), [](const Placed& placed) { return placed.kind.empty(); });
  if (!parts_.store || nameless) return;
  if (const auto saved = parts_.store->save(placements_); !saved) parts_.journal.say(saved.error());
}

void Desktop::feedFamilies() {
  std::set<std::string> families;
  for (const auto& placed : placements_.all()) {
    if (sizeOf(placed.family)) families.insert(placed.family);
  }
  // A wish interrupts a load: a board that only moved is none.
  std::vector wanted(families.begin(), families.end());
  if (std::exchange(fedFamilies_, wanted) == wanted) return;
  feed_.post([wanted = std::move(wanted)](host::Feed& feed) { feed.show(wanted); });
}

void Desktop::reload() {
  nextReload_.reset();
  feed_.post([](host::Feed& feed) { feed.reload(); });
}

void Desktop::openGallery() {
  parts_.journal.sayIfVerbose("the gallery opens");
  if (!gallery_) {
    parts_.theme.use();
    gallery_ = std::make_unique<GalleryWindow>(
        texts_, GalleryWindow::Actions{.add = [this](const std::string& family) { add(family); },
                                       .closed = [this] { MainLoop::postWhenIdle([this] { closeGallery(); }); }});
    gallery_->describe(widget_);
    feed_.post(
        [this](host::Feed& feed) { MainLoop::post([this, boards = feed.previews()] { previewsCame(boards); }); });
  }
  gallery_->present();
}

void Desktop::previewsCame(const host::FeedBoards& boards) {
  previews_.clear();
  for (const auto& [family, view] : boards.views) previews_[family].view = host::localised(view, language_);
  if (gallery_) showPreviews();
}

void Desktop::showPreviews() {
  std::map<std::string, std::shared_ptr<BoardPicture>> pictures;
  for (const auto& [family, content] : previews_) {
    pictures[family] = std::make_shared<BoardPicture>(family, content, look_);
  }
  gallery_->show(pictures);
}

void Desktop::closeGallery() {
  gallery_.reset();
  previews_.clear();
  // Nothing is left through which it could be spoken to.
  if (placements_.empty() && !firstWidgetWanted_) quit();
}

std::vector<Monitor> Desktop::monitorValues() const {
  std::vector<Monitor> values;
  for (const auto& each : monitors_) values.push_back(each.monitor);
  return values;
}

const Arranged* Desktop::arranged(int id) const {
  const auto found = std::ranges::find(arranged_, id, &Arranged::id);
  return found == arranged_.end() ? nullptr : &*found;
}

std::vector<Rect> Desktop::others(int id) const {
  std::vector<Rect> rects;
  for (const auto& each : arranged_) {
    if (each.id != id) rects.push_back(each.rect);
  }
  return rects;
}

}  // namespace desktop
