#include "render/picture_library/picture_in_preparation.hpp"

namespace render {

PictureInPreparation::PictureInPreparation(std::filesystem::path module, std::string language) {
  std::packaged_task<Result()> task(
      [module = std::move(module), language = std::move(language), order = order_.get_future()]() mutable {
        return work(module, language, std::move(order));
      });
  result_ = task.get_future();
  thread_ = std::jthread(std::move(task));
}

PictureInPreparation::~PictureInPreparation() {
  if (!ordered_) order_.set_value(std::nullopt);
}

PictureInPreparation::Result PictureInPreparation::finish(Draw draw, const protocol::Node& tree,
                                                          const PictureOptions& options) {
  ordered_ = true;
  order_.set_value(Order{draw, &tree, &options});
  return result_.get();
}

PictureInPreparation::Result PictureInPreparation::work(const std::filesystem::path& module,
                                                        const std::string& language,
                                                        std::future<std::optional<Order>> order) {
  const auto library = PictureLibrary::open(module);
  if (library) library->loadFonts(language);
  const auto ordered = order.get();
  if (!library) return std::unexpected(library.error());
  if (!ordered) return std::unexpected("no picture was asked for");
  auto picture = ((*library).*ordered->draw)(*ordered->tree, *ordered->options);
  if (!picture) return std::unexpected("can't draw the picture: " + std::string(describe(picture.error())));
  return std::move(*picture);
}

}  // namespace render
