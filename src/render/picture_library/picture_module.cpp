// The entry of the loadable picture module.
#include "protocol/view_tree/builders.hpp"
#include "render/picture/drawing.hpp"
#include "render/picture_library/picture_functions.hpp"

namespace render {
namespace {

void loadFonts(const std::string& language) {
  using protocol::FontWeight;
  using protocol::Text;
  using protocol::TextStyle;
  // One text in each face of a board: the library keeps the faces for what is drawn next.
  const protocol::Node faces = protocol::VStack(
      {}, {Text("V").font(TextStyle::headline), Text("v").font(TextStyle::caption), Text("v").font(TextStyle::caption2),
           Text("3").font(TextStyle::caption2).weight(FontWeight::medium),
           Text("0").font(TextStyle::caption2).weight(FontWeight::semibold)});
  static_cast<void>(prepare(faces, {.language = language}));
}

constexpr PictureFunctions functions{VAMBA_BUILD, drawPng, drawSvg, drawPdf, loadFonts};

}  // namespace
}  // namespace render

extern "C" __attribute__((visibility("default"))) const render::PictureFunctions* vambaPictures() {
  return &render::functions;
}
