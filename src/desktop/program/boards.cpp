#include "desktop/program/boards.hpp"

#include <utility>

#include "desktop/windows/fixed_boards.hpp"
#include "host/texts/fewer_rows.hpp"

namespace desktop {

protocol::Node boardInBox(const protocol::Node& view, protocol::WidgetFamily family, host::Language language) {
  const render::PictureOptions options{.form = render::familyForm(family), .language = host::languageTag(language)};
  return host::fitted(view, language, [&](const protocol::Node& tree) { return render::fits(tree, options); });
}

Boards::Boards(host::Language language) : language_(language), look_{.language = host::languageTag(language)} {}

bool Boards::setLook(BoardLook look) {
  look.language = host::languageTag(language_);
  if (look == look_) return false;
  look_ = std::move(look);
  pictures_.clear();
  return true;
}

bool Boards::setContent(protocol::WidgetFamily family, const protocol::Node& view, render::Redaction redaction) {
  BoardContent content{.view = boardInBox(view, family, language_), .redaction = redaction};
  const auto known = contents_.find(family);
  if (known != contents_.end() && known->second == content) return false;
  contents_.insert_or_assign(family, std::move(content));
  pictures_.erase(family);
  return true;
}

std::shared_ptr<BoardPicture> Boards::picture(protocol::WidgetFamily family) {
  auto& picture = pictures_[family];
  if (!picture) {
    const auto content = contents_.find(family);
    picture =
        std::make_shared<BoardPicture>(family, content == contents_.end() ? loadingBoard() : content->second, look_);
  }
  return picture;
}

}  // namespace desktop
