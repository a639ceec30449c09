// The gallery: creates and destroys its window, and keeps the previews that the window shows.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "desktop/placement/place.hpp"
#include "desktop/windows/gallery_window.hpp"
#include "host/feed/feed.hpp"

namespace desktop {

class Gallery {
 public:
  /// `actions.closed` is called after the window has been destroyed.
  Gallery(const Texts& texts, GalleryWindow::Actions actions) : texts_(texts), actions_(std::move(actions)) {}

  bool isOpen() const { return window_ != nullptr; }
  /// Opens the window, or brings it to the front if it is open.
  void open(const host::WidgetDeclaration& widget);
  void describe(const host::WidgetDeclaration& widget);
  void showPreviews(const host::FeedBoards& boards, host::Language language, const BoardLook& look);
  void setLook(const BoardLook& look);
  void setTextScale(double scale);
  /// Says where a widget was added, if the window is open.
  void announceAdded(Corner corner);

 private:
  void close();
  void show();

  const Texts& texts_;
  GalleryWindow::Actions actions_;
  std::unique_ptr<GalleryWindow> window_;
  BoardLook look_;
  double textScale_ = 1;
  std::map<protocol::WidgetFamily, BoardContent> previews_;
};

}  // namespace desktop
