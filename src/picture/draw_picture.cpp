#include "picture/draw_picture.hpp"

#include "host/texts/fewer_rows.hpp"
#include "render/picture/drawing.hpp"
#include "render/picture/picture.hpp"

namespace picture {
namespace {

render::PictureOptions optionsFor(const host::Board& board, const host::CommandLine& line) {
  return {
      .form = render::familyForm(line.family),
      .scale = line.scale,
      .appearance = line.appearance == host::Appearance::dark ? render::Appearance::dark : render::Appearance::light,
      .redaction = board.sample ? render::Redaction::placeholder : render::Redaction::none,
      .lettering = line.outlines ? render::Lettering::outlines : render::Lettering::text,
      .title = board.title,
      .language = host::languageTag(host::userLanguage())};
}

render::Picture draw(host::Format format, const protocol::Node& view, const render::PictureOptions& options) {
  switch (format) {
    case host::Format::svg:
      return render::drawSvg(view, options);
    case host::Format::pdf:
      return render::drawPdf(view, options);
    default:
      return render::drawPng(view, options);
  }
}

}  // namespace

host::DrawnBoard drawPicture(const host::Board& board, const host::CommandLine& line) {
  const auto options = optionsFor(board, line);
  const auto view = host::fitted(board.view, host::userLanguage(),
                                 [&](const protocol::Node& tree) { return render::fits(tree, options); });
  auto picture = draw(line.format, view, options);
  if (!picture) return std::unexpected("can't draw the picture: " + std::string(describe(picture.error())));
  return std::move(*picture);
}

}  // namespace picture
