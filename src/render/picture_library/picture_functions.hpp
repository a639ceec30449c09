// What the loadable picture module offers, as one table behind one C symbol. Both sides are built together: the table
// and the values it takes have no meaning between builds.
#pragma once

#include "protocol/view_tree/node.hpp"
#include "render/picture/picture.hpp"

namespace render {

struct PictureFunctions {
  const char* build;  ///< which build the module is of; another one is not called
  Picture (*drawPng)(const protocol::Node& tree, const PictureOptions& options);
  Picture (*drawSvg)(const protocol::Node& tree, const PictureOptions& options);
  Picture (*drawPdf)(const protocol::Node& tree, const PictureOptions& options);
  void (*loadFonts)(const std::string& language);
};

inline constexpr const char* pictureModuleEntry = "vambaPictures";
using PictureModuleEntry = const PictureFunctions* (*)();

}  // namespace render
