#include "host/command_line/command_line.hpp"

#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <absl/strings/ascii.h>

#include "host/command_line/outcome.hpp"

namespace host {
namespace {

/// The words that an option takes, in the order in which its help names them.
template <typename Value>
using Words = std::vector<std::pair<std::string, Value>>;

const Words<std::string> families{{"small", "systemSmall"}, {"medium", "systemMedium"}, {"large", "systemLarge"}};
const Words<Format> boardFormats{
    {"text", Format::text}, {"json", Format::json}, {"svg", Format::svg}, {"png", Format::png}, {"pdf", Format::pdf}};
const Words<Format> streamFormats{
    {"text", Format::text}, {"json", Format::json}, {"waybar", Format::waybar}, {"line", Format::line}};
const Words<AutostartAction> autostartActions{
    {"on", AutostartAction::on}, {"off", AutostartAction::off}, {"status", AutostartAction::status}};
const Words<Appearance> appearances{{"light", Appearance::light}, {"dark", Appearance::dark}};

template <typename Value>
std::optional<Value> meaning(const Words<Value>& words, std::string_view wanted) {
  for (const auto& [word, value] : words) {
    if (word == wanted) return value;
  }
  return std::nullopt;
}

/// An option that takes one of the words and keeps what it means in `value`.
template <typename Value, typename Kept>
void addChoice(CLI::App& app, const std::string& name, Kept& value, const Words<Value>& words, const char* help) {
  std::string names;
  for (const auto& [word, meant] : words) names += (names.empty() ? "" : "|") + word;
  const auto keep = [&value, &words, name, names](const CLI::results_t& given) {
    const auto& word = given.back();
    const auto meant = meaning(words, word);
    if (!meant) throw CLI::ValidationError(name, word + " is not one of " + names);
    value = *meant;
    return true;
  };
  app.add_option(name, keep, help)->type_name(names)->take_last();
}

void addFamily(CLI::App& app, CommandLine& line) {
  addChoice(app, "--family", line.family, families, "the board's size (default: medium)");
}

/// An empty text for a scale that pictures are drawn at, else what is wrong with it ("nan" is a number as well).
std::string reasonableScale(const std::string& text) {
  double scale = 0;
  const bool reasonable = CLI::detail::lexical_cast(text, scale) && scale >= 0.25 && scale <= 8;
  return reasonable ? std::string() : text + " is not a number from 0.25 to 8";
}

/// The format that a file's name asks for; text where it asks for none.
Format formatOf(const std::filesystem::path& file) {
  const std::string suffix = absl::AsciiStrToLower(file.extension().string());
  return meaning(boardFormats, suffix.empty() ? suffix : suffix.substr(1)).value_or(Format::text);
}

}  // namespace

std::variant<CommandLine, Exit> parseCommandLine(int argc, const char* const* argv) {
  CommandLine line;
  std::optional<Format> format;
  CLI::App app("The Vamba day widget's host: asks the widget for your day and shows it.", "vamba-host");
  app.set_version_flag("--version", std::string("vamba-host ") + VAMBA_VERSION);
  app.add_option("--extension", line.extension, "the extension's program")->type_name("PATH");
  app.fallthrough();
  app.require_subcommand(0, 1);
  app.footer("Without a command: desktop where a display is reachable, else show.");

  const auto add = [&](const char* name, Command command, const char* help) -> CLI::App& {
    CLI::App* subcommand = app.add_subcommand(name, help);
    subcommand->set_version_flag("--version", std::string("vamba-host ") + VAMBA_VERSION);
    subcommand->callback([&line, command] { line.command = command; });
    return *subcommand;
  };
  auto& gallery = add("gallery", Command::gallery, "the extension's widgets: name, description, sizes");
  gallery.add_flag("--json", line.galleryAsJson, "as JSON");
  addFamily(add("placeholder", Command::placeholder, "the widget's placeholder entry, as JSON"), line);
  auto& snapshot = add("snapshot", Command::snapshot, "a single entry, as JSON");
  addFamily(snapshot, line);
  snapshot.add_flag("--preview", line.preview, "the sample of the gallery instead of your day");
  addFamily(add("timeline", Command::timeline, "the timeline with its reload date, as JSON"), line);

  auto& show = add("show", Command::show, "one board, once");
  addFamily(show, line);
  show.add_option("--entry", line.entry,
                  "timeline, snapshot, preview, placeholder, or a file with one entry (- for standard input)")
      ->type_name("ENTRY");
  addChoice(show, "--format", format, boardFormats, "default: by the output's suffix, else text");
  show.add_option("--output", line.output, "where to write it (- is standard output)")->type_name("FILE");
  show.add_option("--scale", line.scale, "pixels of a picture for each point, 0.25 to 8 (default: 1)")
      ->check(reasonableScale)
      ->type_name("N");
  addChoice(show, "--appearance", line.appearance, appearances, "of a picture (default: light)");
  show.add_flag("--outlines", line.outlines, "letters of an SVG as outlines, for where the font is missing");

  auto& watch = add("watch", Command::watch, "the board again at each reload, until interrupted");
  addFamily(watch, line);
  addChoice(watch, "--format", format, streamFormats, "default: text");
  watch.add_flag("--verbose", line.verbose, "say on standard error what is asked, and when next");

  auto& desktop = add("desktop", Command::desktop, "the widgets on the desktop, until you quit");
  desktop.add_flag("--verbose", line.verbose, "say on standard error how and when windows are shown");
  desktop.add_flag("--part-of-desktop", line.partOfDesktop,
                   "on X11: stay when the desktop is shown, though a file manager's icons may cover the widgets");

  auto& autostart = add("autostart", Command::autostart, "whether the widgets come up with your session");
  addChoice(autostart, "action", line.autostart, autostartActions, "have it so, or not, or tell");
  autostart.get_option("action")->required();

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    const bool asked = app.exit(error, out, err) == 0;
    return Exit{asked ? exit_status::shown : exit_status::wrongCommandLine, out.str(), err.str()};
  }
  if (line.output == "-") line.output.reset();
  line.format = format.value_or(line.output ? formatOf(*line.output) : Format::text);
  return line;
}

}  // namespace host
