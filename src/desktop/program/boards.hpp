// What each size of the widget shows and how it looks, as pictures that the windows of that size share.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "desktop/windows/board_picture.hpp"
#include "host/texts/texts.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

/// A view of this size with its texts in the language, without the rows that it has no room for, which are counted.
protocol::Node boardInBox(const protocol::Node& view, protocol::WidgetFamily family, host::Language language);

class Boards {
 public:
  explicit Boards(host::Language language);

  /// Whether that changed anything: pictures that were handed out before are out of date then.
  bool setLook(BoardLook look);
  bool setContent(protocol::WidgetFamily family, const protocol::Node& view, render::Redaction redaction);

  const BoardLook& look() const { return look_; }
  /// Bars where texts will stand, as long as the size has no content.
  std::shared_ptr<BoardPicture> picture(protocol::WidgetFamily family);

 private:
  host::Language language_;
  BoardLook look_;
  std::map<protocol::WidgetFamily, BoardContent> contents_;
  std::map<protocol::WidgetFamily, std::shared_ptr<BoardPicture>> pictures_;  ///< made when first asked for
};

}  // namespace desktop
