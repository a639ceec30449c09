#include "host/commands/exporters.hpp"

#include "host/commands/program_folder.hpp"
#include "host/commands/terminal.hpp"
#include "host/texts/texts.hpp"
#include "platform/view_tree/node_json.hpp"
#include "render/picture_library/picture_library.hpp"

namespace host {
namespace {

using Drawing = std::expected<std::string, std::string>;

std::string languageTag(Language language) {
  switch (language) {
    case Language::english:
      return "en";
    case Language::lithuanian:
      return "lt";
    case Language::polish:
      break;
  }
  return "pl";
}

render::PictureOptions pictureOptions(const Board& board, const CommandLine& line) {
  return {.form = render::familyForm(line.family).value_or(render::mediumFamily),
          .scale = line.scale,
          .appearance = line.appearance == Appearance::dark ? render::Appearance::dark : render::Appearance::light,
          .redaction = board.sample ? render::Redaction::placeholder : render::Redaction::none,
          .lettering = line.outlines ? render::Lettering::outlines : render::Lettering::text,
          .title = board.title,
          .language = languageTag(userLanguage())};
}

/// Pictures by the module that is loaded for the first of them.
template <render::Picture (render::PictureLibrary::*draw)(const platform::Node&, const render::PictureOptions&) const>
Drawing drawPicture(const Board& board, const CommandLine& line) {
  if (!line.output && onTerminal())
    return std::unexpected("a picture is no text for a terminal; name a file with --output");
  const auto library = render::PictureLibrary::open(render::pictureModulePath(programFolder()));
  if (!library) return std::unexpected(library.error());
  auto picture = ((*library).*draw)(localised(board.view), pictureOptions(board, line));
  if (!picture) return std::unexpected("can't draw the picture: " + std::string(render::describe(picture.error())));
  return std::move(*picture);
}

Drawing drawText(const Board& board, const CommandLine& line) {
  return render::drawTerminalBoard(localised(board.view),
                                   line.output ? fileOptions(line.family) : terminalOptions(line.family));
}

Drawing drawJson(const Board& board, const CommandLine&) { return toJson(board.view).dump() + "\n"; }

struct Exporter {
  Format format;
  Drawing (*draw)(const Board& board, const CommandLine& line);
};

constexpr Exporter exporters[] = {{Format::text, drawText},
                                  {Format::json, drawJson},
                                  {Format::png, drawPicture<&render::PictureLibrary::drawPng>},
                                  {Format::svg, drawPicture<&render::PictureLibrary::drawSvg>},
                                  {Format::pdf, drawPicture<&render::PictureLibrary::drawPdf>}};

}  // namespace

std::expected<std::string, std::string> drawn(const Board& board, const CommandLine& line) {
  for (const auto& exporter : exporters) {
    if (exporter.format == line.format) return exporter.draw(board, line);
  }
  return std::unexpected("a single board has no such format");
}

}  // namespace host
