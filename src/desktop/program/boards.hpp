// What each size of the widget shows and how it looks, as pictures that the windows of that size share.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "desktop/windows/board_picture.hpp"

namespace desktop {

class Boards {
 public:
  /// Whether that changed anything: pictures that were handed out before are out of date then.
  bool setLook(const BoardLook& look);
  bool setContent(const std::string& family, BoardContent content);

  const BoardLook& look() const { return look_; }
  /// Bars where texts will stand, as long as the size has no content.
  std::shared_ptr<BoardPicture> picture(const std::string& family);

 private:
  BoardLook look_;
  std::map<std::string, BoardContent> contents_;                   // by family
  std::map<std::string, std::shared_ptr<BoardPicture>> pictures_;  // by family, made when first asked for
};

}  // namespace desktop
