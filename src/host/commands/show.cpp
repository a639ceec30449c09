#include "host/command_line/outcome.hpp"
#include "host/commands/ask_patiently.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"

namespace host {

CommandResult show(ExtensionClient& extension, const CommandLine& line, Draw draw) {
  sayWhatIsInUse(line);
  const auto widget = widgetFor(extension, line.family);
  if (!widget) return std::unexpected(widget.error());
  const auto entry = entryFor(extension, widget->kind, line);
  if (!entry) return std::unexpected(entry.error());
  const auto view = askPatiently([&] { return extension.render(widget->kind, line.family, entry->json); });
  if (!view) {
    auto failure = asCommandFailure(view.error());
    // An entry that the extension refuses to draw came from the file on the command line.
    if (view.error().kind == ExtensionFailure::Kind::refused) failure.status = exit_status::wrongCommandLine;
    return std::unexpected(std::move(failure));
  }

  const Board board{
      .view = *view, .title = widget->displayName, .sample = line.entry == "placeholder", .holds = entry->holds};
  const auto drawing = draw(board, line);
  if (!drawing) return std::unexpected(CommandFailure{exit_status::wrongCommandLine, drawing.error()});
  if (auto written = write(line.output, *drawing); !written) {
    const int status = line.output ? exit_status::wrongCommandLine : exit_status::noAnswer;
    return std::unexpected(CommandFailure{status, written.error()});
  }
  return {};
}

}  // namespace host
