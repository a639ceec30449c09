#include "host/command_line/command_line.hpp"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <absl/strings/ascii.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_join.h>

#include "host/command_line/completion.hpp"
#include "host/command_line/nearest_word.hpp"
#include "host/command_line/outcome.hpp"

namespace host {
namespace {

/// The words that an option takes, in the order in which its help names them.
template <typename Value>
using Words = std::vector<std::pair<std::string, Value>>;

using protocol::WidgetFamily;
const Words<WidgetFamily> families{
    {"small", WidgetFamily::systemSmall}, {"medium", WidgetFamily::systemMedium}, {"large", WidgetFamily::systemLarge}};
const Words<Format> boardFormats{{"text", Format::text}, {"json", Format::json}, {"waybar", Format::waybar},
                                 {"line", Format::line}, {"svg", Format::svg},   {"png", Format::png},
                                 {"pdf", Format::pdf}};
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

/// A mistake in the command line, in words for a person.
struct Mistake {
  std::string what;
};

std::string suggestion(std::string_view given, const std::vector<std::string>& words) {
  const auto nearest = nearestWord(given, words);
  return nearest ? absl::StrCat("; did you mean \"", *nearest, "\"?") : std::string();
}

/// An option that takes one of the words and keeps what it means in `value`.
template <typename Value, typename Kept>
void addChoice(CLI::App& app, const std::string& name, Kept& value, const Words<Value>& words, const char* help) {
  std::vector<std::string> names;
  for (const auto& [word, meant] : words) names.push_back(word);
  const std::string all = absl::StrJoin(names, "|");
  const auto keep = [&value, &words, name, names, all](const CLI::results_t& given) {
    const auto& word = given.back();
    const auto meant = meaning(words, word);
    if (!meant) {
      throw Mistake{absl::StrCat(name, ": \"", word, "\" is not one of ", all, suggestion(word, names))};
    }
    value = *meant;
    return true;
  };
  app.add_option(name, keep, help)->type_name(all)->take_last();
}

/// An empty text for a scale that pictures are drawn at, else what is wrong with it ("nan" is a number as well).
std::string reasonableScale(const std::string& text) {
  double scale = 0;
  const bool reasonable = CLI::detail::lexical_cast(text, scale) && scale >= 0.25 && scale <= 8;
  return reasonable ? std::string() : text + " is not a number from 0.25 to 8";
}

/// An empty text for a value that is not empty, else what is wrong.
std::string notEmpty(const std::string& text) { return text.empty() ? "an empty value names nothing" : std::string(); }

/// An option that takes one text, the last where it is given several times.
template <typename Kept>
CLI::Option& addText(CLI::App& app, const std::string& name, Kept& value, const char* type, const char* help) {
  return *app.add_option(name, value, help)->type_name(type)->take_last()->check(notEmpty);
}

/// The format that a file's suffix asks for; text for "board" and "board.txt".
Format formatOf(const std::filesystem::path& file) {
  const std::string suffix = absl::AsciiStrToLower(file.extension().string());
  if (suffix.empty() || suffix == ".txt") return Format::text;
  if (const auto format = meaning(boardFormats, suffix.substr(1))) return *format;
  throw Mistake{absl::StrCat("--output: no format has the suffix \"", suffix, "\"; name one with --format")};
}

/// `vamba-host` with its commands and options, bound to the values that they set.
class Parser {
 public:
  Parser() {
    app_.set_version_flag("--version", version);
    addText(app_, "--extension", line_.extension, "PATH", "the extension's program");
    app_.fallthrough();
    app_.require_subcommand(0, 1);
    app_.footer("Without a command: desktop where a display is reachable, else show.");
    addEntries();
    addShow();
    addWatch();
    addDesktop();
    addSignIn();
    add("doctor", Command::doctor, "Say what is in use, whether it works, and what to do where it does not.");
    addHelp();
  }

  /// Throws `Mistake` or what CLI11 throws.
  CommandLine read(int argc, const char* const* argv) {
    app_.parse(argc, argv);
    finish();
    return line_;
  }

  /// What is wrong, the nearest right word, and where help is.
  std::string explain(const CLI::ParseError& error) const {
    if (auto missing = missingValue(error)) return *std::move(missing);
    const auto extra = app_.remaining(true);
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr || extra.empty()) return error.what();
    const std::string& word = extra.front();
    if (command() == nullptr && !word.starts_with('-')) {
      return absl::StrCat("there is no command \"", word, "\"", suggestion(word, commandNames()));
    }
    return absl::StrCat("\"", word, "\" was not expected", suggestion(word, optionNames()));
  }

  std::string hint() const {
    const auto* const chosen = command();
    return absl::StrCat("Run \"vamba-host ", chosen == nullptr ? "" : chosen->get_name() + " ", "--help\" for help.");
  }

  /// The help of the command that "help" names, else the program's.
  std::string help() const {
    if (helpFor_.empty()) return app_.get_formatter()->make_help(&app_, app_.get_name(), CLI::AppFormatMode::Normal);
    for (const auto* each : app_.get_subcommands({})) {
      if (each->get_name() == helpFor_) return each->help("vamba-host");
    }
    throw Mistake{absl::StrCat("there is no command \"", helpFor_, "\"", suggestion(helpFor_, commandNames()))};
  }
  bool helpAsked() const { return app_.got_subcommand("help"); }

  const CLI::App& app() const { return app_; }

 private:
  CLI::App& add(const char* name, Command command, const char* help) {
    CLI::App* subcommand = app_.add_subcommand(name, help);
    subcommand->set_version_flag("--version", version);
    subcommand->callback([this, command] { line_.command = command; });
    return *subcommand;
  }

  void addFamily(CLI::App& command) {
    addChoice(command, "--family", line_.family, families, "the board's size (default: medium)");
  }

  void addEntries() {
    auto& gallery = add("gallery", Command::gallery, "List the extension's widgets: name, description, sizes.");
    gallery.add_flag("--json", line_.galleryAsJson, "as JSON");
    addFamily(add("placeholder", Command::placeholder, "Print the widget's placeholder entry as JSON."));
    auto& snapshot = add("snapshot", Command::snapshot, "Print a single entry as JSON.");
    addFamily(snapshot);
    snapshot.add_flag("--preview", line_.preview, "the sample of the gallery instead of your day");
    addFamily(add("timeline", Command::timeline, "Print the timeline with its reload date as JSON."));
  }

  void addShow() {
    auto& show = add("show", Command::show, "Show one board, once.");
    addFamily(show);
    addText(show, "--entry", line_.entry, "ENTRY",
            "timeline, snapshot, preview, placeholder, or a file with one entry (- for standard input)");
    addChoice(show, "--format", format_, boardFormats, "default: by the output's suffix, else text");
    addText(show, "--output", line_.output, "FILE", "where to write it (- is standard output)");
    show.add_option("--scale", line_.scale, "pixels of a picture for each point, 0.25 to 8 (default: 1)")
        ->check(reasonableScale)
        ->type_name("N")
        ->take_last();
    addChoice(show, "--appearance", line_.appearance, appearances, "of a picture (default: light)");
    show.add_flag("--outlines", line_.outlines, "letters of an SVG as outlines, for where the font is missing");
    show.add_flag("--verbose", line_.verbose, "say on standard error what is asked");
  }

  void addWatch() {
    auto& watch = add("watch", Command::watch, "Show the board again at each reload, until interrupted.");
    addFamily(watch);
    addChoice(watch, "--format", format_, streamFormats, "default: text");
    watch.add_flag("--verbose", line_.verbose, "say on standard error what is asked, and when next");
  }

  void addDesktop() {
    auto& desktop = add("desktop", Command::desktop, "Show the widgets on the desktop, until you quit.");
    desktop.add_flag("--focus", line_.focus, "bring the widgets to the front and focus the first");
    desktop.add_flag("--verbose", line_.verbose, "say on standard error how and when windows are shown");
    desktop.add_flag("--at-login", line_.atLogin, "end at once if no widget is placed (used by autostart)");
    auto& autostart = add("autostart", Command::autostart, "Start the widgets at login.");
    addChoice(autostart, "action", line_.autostart, autostartActions, "turn on, turn off, or show the status");
    autostart.get_option("action")->required();
  }

  void addSignIn() {
    auto& signIn =
        add("sign-in", Command::signIn, "Try a device token, read from the terminal or standard input, and keep it.");
    addText(signIn, "--address", line_.address, "URL",
            "the service's address (default: the one kept, else the built-in one)");
    signIn.add_flag("--status", line_.signInStatus, "say where a token is kept, instead");
    add("sign-out", Command::signOut, "Remove the token and the address.");
  }

  void addHelp() {
    app_.add_subcommand("help", "Explain a command.")
        ->add_option("command", helpFor_, "the command to explain")
        ->type_name(absl::StrJoin(commandNames(), "|"));
  }

  /// What the options say together; one that would have no effect is a mistake.
  void finish() {
    if (line_.output == "-") line_.output.reset();
    line_.format = format_ ? *format_ : line_.output ? formatOf(*line_.output) : Format::text;
    const auto* const chosen = command();
    if (chosen == nullptr) return;
    const auto given = [chosen](const char* option) {
      const auto* const found = chosen->get_option_no_throw(option);
      return found != nullptr && found->count() > 0;
    };
    for (const char* option : {"--scale", "--appearance", "--outlines"}) {
      if (given(option) && !isPicture(line_.format)) {
        throw Mistake{absl::StrCat(option, " has an effect on pictures only; name one with --format or --output")};
      }
    }
    if (line_.signInStatus && line_.address) throw Mistake{"--address has no effect with --status"};
    if (line_.outlines && line_.format != Format::svg) throw Mistake{"--outlines has an effect on SVG only"};
  }

  /// "--family needs one of small|medium|large" where an option or argument has no value.
  std::optional<std::string> missingValue(const CLI::ParseError& error) const {
    const bool argument = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!argument && dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return std::nullopt;
    const std::string what = error.what();
    const std::string name = what.substr(0, what.find_first_of(": "));
    for (const auto* from : {command(), &app_}) {
      const auto* const option = from == nullptr ? nullptr : from->get_option_no_throw(name);
      if (option == nullptr || option->get_type_name().empty()) continue;
      const std::string type = option->get_type_name();
      const char* const kind = type.find('|') == std::string::npos ? "a value: " : "one of ";
      return absl::StrCat(argument ? from->get_name() : name, " needs ", kind, type);
    }
    return std::nullopt;
  }

  const CLI::App* command() const {
    const auto chosen = app_.get_subcommands();
    return chosen.empty() ? nullptr : chosen.front();
  }

  std::vector<std::string> commandNames() const {
    std::vector<std::string> names;
    for (const auto* each : app_.get_subcommands({})) names.push_back(each->get_name());
    return names;
  }

  std::vector<std::string> optionNames() const {
    std::vector<std::string> names;
    for (const auto* from : {command(), &app_}) {
      if (from == nullptr) continue;
      for (const auto* option : from->get_options()) names.push_back(option->get_name());
    }
    return names;
  }

  static inline const std::string version = std::string("vamba-host ") + VAMBA_VERSION;

  CommandLine line_;
  std::optional<Format> format_;
  std::string helpFor_;
  CLI::App app_{"The Vamba day widget's host: asks the widget for your day and shows it.", "vamba-host"};
};

Exit refused(const Parser& parser, const std::string& what) {
  return {exit_status::wrongCommandLine, {}, "vamba-host: " + what + "\n" + parser.hint() + "\n"};
}

}  // namespace

std::string_view familyWord(WidgetFamily family) {
  return std::ranges::find(families, family, &std::pair<std::string, WidgetFamily>::second)->first;
}

std::string_view hostVersion() { return VAMBA_VERSION; }

std::variant<CommandLine, Exit> parseCommandLine(int argc, const char* const* argv) {
  Parser parser;
  // For the completions of the shells, not for people: the help does not list it.
  if (argc > 1 && std::string_view(argv[1]) == "--complete") {
    return Exit{exit_status::shown, completions(parser.app(), {argv + 2, argv + argc}), {}};
  }
  try {
    auto line = parser.read(argc, argv);
    if (parser.helpAsked()) return Exit{exit_status::shown, parser.help(), {}};
    return line;
  } catch (const CLI::CallForHelp&) {
    return Exit{exit_status::shown, parser.app().help(), {}};
  } catch (const CLI::CallForVersion& version) {
    return Exit{exit_status::shown, absl::StrCat(version.what(), "\n"), {}};
  } catch (const CLI::ParseError& error) {
    return refused(parser, parser.explain(error));
  } catch (const Mistake& mistake) {
    return refused(parser, mistake.what);
  }
}

}  // namespace host
