#include "host/commands/terminal.hpp"

#include <charconv>
#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

namespace host {
namespace {

constexpr int usualColumns = 80;

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view{} : value;
}

int columnsOfVariable() {
  const std::string_view text = variable("COLUMNS");
  int columns = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), columns);
  return error == std::errc{} && end == text.data() + text.size() && columns > 0 ? columns : usualColumns;
}

int columns() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
  return columnsOfVariable();
}

int widest(protocol::WidgetFamily family) {
  return family == protocol::WidgetFamily::systemSmall ? render::smallBoard : render::wideBoard;
}

}  // namespace

bool onTerminal() { return isatty(STDOUT_FILENO) == 1; }

render::TerminalOptions terminalOptions(protocol::WidgetFamily family) {
  return {.columns = columns(),
          .widestBoard = widest(family),
          .escapes = onTerminal() && variable("TERM") != "dumb" && variable("NO_COLOR").empty()};
}

render::TerminalOptions fileOptions(protocol::WidgetFamily family) {
  return {.columns = usualColumns, .widestBoard = widest(family), .escapes = false};
}

}  // namespace host
