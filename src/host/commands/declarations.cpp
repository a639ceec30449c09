#include "base/json/json_text.hpp"
#include "host/command_line/outcome.hpp"
#include "host/commands/ask_patiently.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"
#include "host/commands/terminal.hpp"
#include "protocol/view_tree/builders.hpp"

namespace host {
namespace {

using nlohmann::json;

CommandResult printJson(const std::expected<json, ExtensionFailure>& answer) {
  if (!answer) return std::unexpected(asCommandFailure(answer.error()));
  return print(base::toPrintableText(*answer) + "\n");
}

protocol::Views declaration(const WidgetDeclaration& widget) {
  using namespace protocol;
  std::string sizes;
  for (const auto& family : widget.families) sizes.append(sizes.empty() ? "" : ", ").append(familyWord(family));
  return VStack({}, {
                        Text(widget.displayName),
                        Text(widget.description),
                        Text(sizes),
                    });
}

}  // namespace

CommandResult gallery(ExtensionClient& extension, const CommandLine& line) {
  if (line.galleryAsJson) return printJson(askPatiently([&] { return extension.widgetsJson(); }));
  const auto widgets = askPatiently([&] { return extension.widgets(); });
  if (!widgets) return std::unexpected(asCommandFailure(widgets.error()));
  std::string text;
  for (const auto& widget : *widgets) {
    const protocol::Node view = protocol::VStack({}, {declaration(widget)});
    text += (text.empty() ? "" : "\n") +
            render::drawPlainBoard(view, terminalOptions(protocol::WidgetFamily::systemMedium).columns);
  }
  return print(text);
}

CommandResult printAnswer(ExtensionClient& extension, const CommandLine& line) {
  const auto widget = widgetFor(extension, line.family);
  if (!widget) return std::unexpected(widget.error());
  const std::string& kind = widget->kind;
  const std::string method = line.command == Command::placeholder ? "placeholder"
                             : line.command == Command::snapshot  ? "snapshot"
                                                                  : "timeline";
  return printJson(askPatiently([&] { return extension.resultOf(method, kind, line.family, line.preview); }));
}

}  // namespace host
