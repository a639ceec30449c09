// `vamba-picture`: the program that `vamba-host show` becomes to draw a picture. It reads the same command line.
#include <cstdio>

#include "host/command_line/programs.hpp"
#include "host/command_line/run_program.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/terminal.hpp"
#include "host/texts/texts.hpp"
#include "picture/draw_picture.hpp"
#include "render/picture/picture.hpp"
#include "render/type/fatal_messages.hpp"
#include "render/type/typesetter.hpp"

namespace {

/// For `vamba-host doctor`: the font that pictures are drawn with.
host::CommandResult tellFont() {
  const auto typesetter = render::Typesetter::create(host::languageTag(host::userLanguage()));
  if (!typesetter) {
    const std::string why(render::describe(render::PictureError::noFont));
    return std::unexpected(host::CommandFailure{host::exit_status::noAnswer, why});
  }
  std::puts(typesetter->family().c_str());
  return {};
}

host::CommandResult showPicture(const host::CommandLine& line) {
  if (line.command == host::Command::doctor) return tellFont();
  if (!line.output && host::onTerminal()) {
    return std::unexpected(host::CommandFailure{host::exit_status::wrongCommandLine,
                                                "a terminal can't show a picture; name a file with --output"});
  }
  render::beginLoadingFonts();  // while the extension starts
  host::ExtensionClient extension({.program = host::extensionProgram(line), .verbose = line.verbose});
  return host::show(extension, line, picture::drawPicture);
}

}  // namespace

int main(int argc, char** argv) {
  render::endWithStatusOnFatalMessages("vamba-host");
  return host::runProgram(argc, argv, showPicture);
}
