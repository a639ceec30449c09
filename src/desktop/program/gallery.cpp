#include "desktop/program/gallery.hpp"

#include <utility>

#include "desktop/program/boards.hpp"
#include "desktop/program/main_loop.hpp"

namespace desktop {

void Gallery::open(const host::WidgetDeclaration& widget) {
  if (!window_) {
    // The window is destroyed after its own handlers have returned.
    const auto closed = [this] { MainLoop::postWhenIdle([this] { close(); }); };
    window_ = std::make_unique<GalleryWindow>(
        texts_, GalleryWindow::Actions{.add = actions_.add, .undoRemoval = actions_.undoRemoval, .closed = closed});
    window_->setTextScale(textScale_);
    window_->describe(widget);
  }
  window_->present();
}

void Gallery::describe(const host::WidgetDeclaration& widget) {
  if (window_) window_->describe(widget);
}

void Gallery::showPreviews(const host::FeedBoards& boards, host::Language language, const BoardLook& look) {
  look_ = look;
  previews_.clear();
  for (const auto& [family, view] : boards.views) previews_[family].view = boardInBox(view, family, language);
  show();
}

void Gallery::setLook(const BoardLook& look) {
  look_ = look;
  show();
}

void Gallery::setTextScale(double scale) {
  textScale_ = scale;
  if (window_) window_->setTextScale(scale);
}

void Gallery::announceAdded(Corner corner) {
  if (!window_) return;
  if (isBottom(corner)) {
    window_->announce(isRight(corner) ? texts_.addedBottomRight : texts_.addedBottomLeft);
  } else {
    window_->announce(isRight(corner) ? texts_.addedTopRight : texts_.addedTopLeft);
  }
}

void Gallery::close() {
  if (!window_) return;
  window_.reset();
  previews_.clear();
  actions_.closed();
}

void Gallery::show() {
  if (!window_) return;
  std::map<protocol::WidgetFamily, std::shared_ptr<BoardPicture>> pictures;
  for (const auto& [family, content] : previews_) {
    pictures[family] = std::make_shared<BoardPicture>(family, content, look_);
  }
  window_->show(pictures);
}

}  // namespace desktop
