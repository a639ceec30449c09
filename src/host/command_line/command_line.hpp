// The command line of `vamba-host`, read into a value. host/commands runs the commands.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "protocol/view_tree/widget_family.hpp"

namespace host {

enum class Command {
  gallery,
  placeholder,
  snapshot,
  timeline,
  show,
  watch,
  desktop,
  signIn,
  signOut,
  doctor,
  autostart
};
enum class Format { text, json, waybar, line, svg, png, pdf };
enum class AutostartAction { on, off, status };
enum class Appearance { light, dark };

struct CommandLine {
  std::optional<Command> command;  ///< none given: the desktop where a display is reachable, else `show`
  std::optional<std::filesystem::path> extension;
  protocol::WidgetFamily family = protocol::WidgetFamily::systemMedium;
  bool galleryAsJson = false;
  bool preview = false;
  std::string entry = "timeline";  ///< timeline, snapshot, preview, placeholder, a file, or "-"
  Format format = Format::text;
  std::optional<std::filesystem::path> output;
  double scale = 1;
  Appearance appearance = Appearance::light;
  bool verbose = false;  ///< say on standard error what is done
  bool atLogin = false;  ///< `desktop` is started with a session and not by hand
  AutostartAction autostart = AutostartAction::status;
  bool focus = false;                  ///< `desktop` brings the widgets to the front
  std::optional<std::string> address;  ///< of the service, for `sign-in`
  bool signInStatus = false;
  bool outlines = false;  ///< letters of an SVG as outlines instead of text
};

/// As `--version` tells it, without the program's name: "0.1.0".
std::string_view hostVersion();

/// The family as `--family` takes it: "medium".
std::string_view familyWord(protocol::WidgetFamily family);

/// Why there is no command to run: help or version to print with status 0, or a mistake with status 2.
struct Exit {
  int status;
  std::string standardOutput;
  std::string standardError;
};

/// Whether the format is a picture, which `vamba-picture` draws.
constexpr bool isPicture(Format format) {
  return format == Format::svg || format == Format::png || format == Format::pdf;
}

std::variant<CommandLine, Exit> parseCommandLine(int argc, const char* const* argv);

}  // namespace host
