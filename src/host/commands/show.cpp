#include "host/commands/commands.hpp"
#include "host/commands/exit_status.hpp"
#include "host/commands/output.hpp"
#include "host/commands/persistence.hpp"
#include "host/commands/terminal.hpp"
#include "host/texts/texts.hpp"
#include "platform/view_tree/node_json.hpp"

namespace host {
namespace {

/// A board drawn in a format: bytes, or a sentence.
using Drawing = std::expected<std::string, std::string>;

Drawing drawText(const platform::Node& view, const CommandLine& line) {
  const auto options = line.output ? fileOptions(line.family) : terminalOptions(line.family);
  return render::drawTerminalBoard(localised(view), options);
}

Drawing drawJson(const platform::Node& view, const CommandLine&) { return toJson(view).dump() + "\n"; }

Drawing drawNothing(const platform::Node&, const CommandLine&) {
  return std::unexpected("this build draws no pictures");
}

struct Exporter {
  Format format;
  Drawing (*draw)(const platform::Node& view, const CommandLine& line);
};

constexpr Exporter exporters[] = {{Format::text, drawText},
                                  {Format::json, drawJson},
                                  {Format::svg, drawNothing},
                                  {Format::png, drawNothing},
                                  {Format::pdf, drawNothing}};

Drawing draw(const platform::Node& view, const CommandLine& line) {
  for (const auto& exporter : exporters) {
    if (exporter.format == line.format) return exporter.draw(view, line);
  }
  return std::unexpected("no such format");
}

}  // namespace

CommandResult show(ExtensionClient& extension, const CommandLine& line) {
  const auto kind = widgetFor(extension, line.family);
  if (!kind) return std::unexpected(kind.error());
  const auto entry = entryFor(extension, *kind, line);
  if (!entry) return std::unexpected(entry.error());
  const auto view = askPatiently([&] { return extension.render(*kind, line.family, *entry); });
  if (!view) return std::unexpected(asCommandFailure(view.error()));

  const auto drawing = draw(*view, line);
  if (!drawing) return std::unexpected(CommandFailure{exit_status::wrongCommandLine, drawing.error()});
  if (auto written = write(line.output, *drawing); !written) {
    const int status = line.output ? exit_status::wrongCommandLine : exit_status::noAnswer;
    return std::unexpected(CommandFailure{status, written.error()});
  }
  return {};
}

}  // namespace host
