#include "host/commands/exporters.hpp"

#include "host/commands/program_folder.hpp"
#include "host/commands/terminal.hpp"
#include "host/texts/texts.hpp"
#include "protocol/json_rpc/json_text.hpp"
#include "protocol/view_tree/node_json.hpp"
#include "render/picture_library/picture_in_preparation.hpp"

namespace host {
namespace {

using Drawing = std::expected<std::string, std::string>;

render::PictureOptions pictureOptions(const Board& board, const CommandLine& line) {
  return {.form = render::familyForm(line.family).value_or(render::mediumFamily),
          .scale = line.scale,
          .appearance = line.appearance == Appearance::dark ? render::Appearance::dark : render::Appearance::light,
          .redaction = board.sample ? render::Redaction::placeholder : render::Redaction::none,
          .lettering = line.outlines ? render::Lettering::outlines : render::Lettering::text,
          .title = board.title,
          .language = languageTag(userLanguage())};
}

Drawing drawText(const Board& board, const CommandLine& line) {
  return render::drawTerminalBoard(localised(board.view),
                                   line.output ? fileOptions(line.family) : terminalOptions(line.family));
}

Drawing drawJson(const Board& board) { return protocol::json_rpc::toText(toJson(board.view)) + "\n"; }

/// How the picture library draws the format; null for one that is no picture.
render::PictureInPreparation::Draw pictureOf(Format format) {
  switch (format) {
    case Format::png:
      return &render::PictureLibrary::drawPng;
    case Format::svg:
      return &render::PictureLibrary::drawSvg;
    case Format::pdf:
      return &render::PictureLibrary::drawPdf;
    default:
      return nullptr;
  }
}

bool pictureForTerminal(const CommandLine& line) {
  return pictureOf(line.format) != nullptr && !line.output && onTerminal();
}

}  // namespace

Export::Export(const CommandLine& line) : line_(line) {
  if (pictureOf(line.format) == nullptr || pictureForTerminal(line)) return;
  picture_ = std::make_unique<render::PictureInPreparation>(render::pictureModulePath(programFolder()),
                                                            languageTag(userLanguage()));
}

Export::~Export() = default;

std::expected<std::string, std::string> Export::drawn(const Board& board) {
  if (pictureForTerminal(line_))
    return std::unexpected("a picture is no text for a terminal; name a file with --output");
  if (picture_ != nullptr) {
    return picture_->finish(pictureOf(line_.format), localised(board.view), pictureOptions(board, line_));
  }
  if (line_.format == Format::text) return drawText(board, line_);
  if (line_.format == Format::json) return drawJson(board);
  return std::unexpected("a single board has no such format");
}

}  // namespace host
