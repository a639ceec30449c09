// Pictures for a program that mostly draws none: the text and graphics libraries behind them are loaded with the
// picture module only when it is opened, since loading them takes longer than showing a board as text.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

#include "render/picture/picture.hpp"
#include "render/picture_library/picture_functions.hpp"

namespace render {

/// Where the picture module is for a program in this folder: beside it, or in the libexec folder of its installation
/// or build tree. A path that need not exist.
std::filesystem::path pictureModulePath(const std::filesystem::path& programFolder);

class PictureLibrary {
 public:
  /// Loads the module, for the rest of the process. The error says why it could not be, for a person.
  static std::expected<PictureLibrary, std::string> open(const std::filesystem::path& module);

  Picture drawPng(const protocol::Node& tree, const PictureOptions& options) const {
    return functions_->drawPng(tree, options);
  }
  Picture drawSvg(const protocol::Node& tree, const PictureOptions& options) const {
    return functions_->drawSvg(tree, options);
  }
  Picture drawPdf(const protocol::Node& tree, const PictureOptions& options) const {
    return functions_->drawPdf(tree, options);
  }

  /// Loads the fonts of a board, which the first picture on this thread does otherwise: worth calling while something
  /// else is waited for. Most of the time of a process that draws one picture goes there.
  void loadFonts(const std::string& language) const { functions_->loadFonts(language); }

 private:
  explicit PictureLibrary(const PictureFunctions& functions) : functions_(&functions) {}

  const PictureFunctions* functions_;
};

}  // namespace render
