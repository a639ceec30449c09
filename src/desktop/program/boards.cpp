#include "desktop/program/boards.hpp"

#include <utility>

#include "desktop/windows/loading_board.hpp"

namespace desktop {

bool Boards::setLook(const BoardLook& look) {
  if (look == look_) return false;
  look_ = look;
  pictures_.clear();
  return true;
}

bool Boards::setContent(const std::string& family, BoardContent content) {
  const auto known = contents_.find(family);
  if (known != contents_.end() && known->second == content) return false;
  contents_.insert_or_assign(family, std::move(content));
  pictures_.erase(family);
  return true;
}

std::shared_ptr<BoardPicture> Boards::picture(const std::string& family) {
  auto& picture = pictures_[family];
  if (!picture) {
    const auto content = contents_.find(family);
    picture =
        std::make_shared<BoardPicture>(family, content == contents_.end() ? loadingBoard() : content->second, look_);
  }
  return picture;
}

}  // namespace desktop
