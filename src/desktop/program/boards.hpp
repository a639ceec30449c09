// The content and the look of the widget in each size, as pictures that all windows of that size share.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "desktop/windows/board_picture.hpp"
#include "host/texts/texts.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

/// The view with its texts in this language. Rows that do not fit into a board of this size are left out, and the last
/// line counts them.
protocol::Node boardInBox(const protocol::Node& view, protocol::WidgetFamily family, host::Language language);

class Boards {
 public:
  explicit Boards(host::Language language);

  // Both return whether anything changed. If so, pictures that were handed out before are out of date.
  bool setLook(BoardLook look);
  bool setContent(protocol::WidgetFamily family, const protocol::Node& view, render::Redaction redaction);

  const BoardLook& look() const { return look_; }
  /// Shows bars in place of texts until the size has content.
  std::shared_ptr<BoardPicture> picture(protocol::WidgetFamily family);

 private:
  host::Language language_;
  BoardLook look_;
  std::map<protocol::WidgetFamily, BoardContent> contents_;
  std::map<protocol::WidgetFamily, std::shared_ptr<BoardPicture>> pictures_;  ///< made when first asked for
};

}  // namespace desktop
