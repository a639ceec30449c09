// One picture whose module and fonts load on a thread of their own while its board is still waited for.
#pragma once

#include <expected>
#include <filesystem>
#include <future>
#include <optional>
#include <string>
#include <thread>

#include "protocol/view_tree/node.hpp"
#include "render/picture_library/picture_library.hpp"

namespace render {

class PictureInPreparation {
 public:
  /// Which of the library's pictures, as `&PictureLibrary::drawPng`.
  using Draw = Picture (PictureLibrary::*)(const protocol::Node&, const PictureOptions&) const;

  /// Begins to load at once.
  PictureInPreparation(std::filesystem::path module, std::string language);
  /// Waits for what is being loaded.
  ~PictureInPreparation();
  PictureInPreparation(const PictureInPreparation&) = delete;
  PictureInPreparation& operator=(const PictureInPreparation&) = delete;

  /// Draws the picture, once: on the thread that loaded the fonts, for fonts are kept for a thread. The error is a
  /// sentence for a person, without its full stop.
  std::expected<std::string, std::string> finish(Draw draw, const protocol::Node& tree, const PictureOptions& options);

 private:
  using Result = std::expected<std::string, std::string>;

  /// Refers to what the caller of `finish` holds while it waits.
  struct Order {
    Draw draw;
    const protocol::Node* tree;
    const PictureOptions* options;
  };

  static Result work(const std::filesystem::path& module, const std::string& language,
                     std::future<std::optional<Order>> order);

  std::promise<std::optional<Order>> order_;
  bool ordered_ = false;
  std::future<Result> result_;
  std::jthread thread_;
};

}  // namespace render
