#include "host/command_line/command_line.hpp"

#include <initializer_list>
#include <vector>

#include <absl/strings/str_split.h>
#include <gtest/gtest.h>

#include "host/command_line/nearest_word.hpp"

namespace host {
namespace {

std::variant<CommandLine, Exit> parse(const std::vector<const char*>& arguments) {
  std::vector<const char*> argv{"vamba-host"};
  argv.insert(argv.end(), arguments.begin(), arguments.end());
  return parseCommandLine(static_cast<int>(argv.size()), argv.data());
}

CommandLine line(std::initializer_list<const char*> arguments) {
  const auto parsed = parse(arguments);
  if (const auto* exit = std::get_if<Exit>(&parsed)) {
    ADD_FAILURE() << exit->standardError;
    return {};
  }
  return std::get<CommandLine>(parsed);
}

TEST(CommandLineTest, ShowsTheMediumBoardOfTheDayByDefault) {
  const auto empty = line({});
  EXPECT_FALSE(empty.command);
  EXPECT_EQ(empty.family, protocol::WidgetFamily::systemMedium);
  EXPECT_EQ(empty.entry, "timeline");
  EXPECT_EQ(empty.format, Format::text);
  EXPECT_EQ(empty.extension, std::nullopt);
}

TEST(CommandLineTest, ReadsEveryOption) {
  const auto show = line({"--extension", "/x", "show", "--family", "small", "--entry", "-", "--format", "svg",
                          "--output", "a.png", "--scale", "1.5", "--appearance", "dark", "--outlines"});
  EXPECT_EQ(show.extension, "/x");
  EXPECT_EQ(show.family, protocol::WidgetFamily::systemSmall);
  EXPECT_EQ(show.entry, "-");
  EXPECT_EQ(show.format, Format::svg);
  EXPECT_EQ(show.output, "a.png");
  EXPECT_EQ(show.scale, 1.5);
  EXPECT_EQ(show.appearance, Appearance::dark);
  EXPECT_TRUE(show.outlines);
  EXPECT_TRUE(line({"gallery", "--json"}).galleryAsJson);
  EXPECT_TRUE(line({"snapshot", "--preview"}).preview);
  EXPECT_TRUE(line({"desktop", "--focus"}).focus);
  EXPECT_EQ(line({"watch", "--format", "waybar", "--extension", "/x"}).extension, "/x");
}

TEST(CommandLineTest, TakesTheFormatFromTheOutputsSuffix) {
  const std::pair<const char*, Format> cases[] = {
      {"a.png", Format::png},   {"a.PNG", Format::png},  {"b/c.svg", Format::svg}, {"d.pdf", Format::pdf},
      {"e.json", Format::json}, {"f.txt", Format::text}, {"g", Format::text},      {"h.waybar", Format::waybar}};
  for (const auto& [file, format] : cases) EXPECT_EQ(line({"show", "--output", file}).format, format) << file;
  EXPECT_EQ(line({"show", "--output", "a.png", "--format", "json"}).format, Format::json);
}

TEST(CommandLineTest, DashAsTheOutputIsStandardOutput) {
  EXPECT_EQ(line({"show", "--output", "-"}).output, std::nullopt);
  EXPECT_EQ(line({"show", "--output", "-", "--format", "svg"}).format, Format::svg);
}

TEST(CommandLineTest, RefusesAWrongLineWithStatus2AndSaysWhy) {
  const std::initializer_list<const char*> wrong[] = {
      {"shwo"},
      {"show", "--family", "extralarge"},
      {"show", "--format", "bmp"},
      {"show", "--output", "a.bmp"},
      {"show", "--scale", "2"},
      {"show", "--appearance", "dark", "--output", "a.txt"},
      {"show", "--outlines", "--format", "png"},
      {"help", "shwo"},
      {"watch", "--format", "png"},
      {"show", "--scale", "0"},
      {"show", "--scale", "nan"},
      {"show", "--scale", "much"},
      {"show", "--appearance", "sepia"},
      {"gallery", "--family", "small"},
      {"show", "watch"},
      {"show", "--output"},
      {"show", "--output", ""},
      {"--extension", "", "show"},
      {"show", ""},
      {""},
      {"doctor", "--family", "small"},
      {"autostart"},
      {"autostart", "sideways"},
      {"autostart", "on", "off", "status"},
  };
  for (const auto& arguments : wrong) {
    const auto parsed = parse(arguments);
    const auto* exit = std::get_if<Exit>(&parsed);
    ASSERT_NE(exit, nullptr) << *(arguments.end() - 1);
    EXPECT_EQ(exit->status, 2);
    EXPECT_NE(exit->standardError, "");
    EXPECT_EQ(exit->standardOutput, "");
  }
}

TEST(CommandLineTest, TakesTheLastOfAnOptionThatIsGivenTwice) {
  const auto shown = line({"show", "--entry", "timeline", "--entry", "preview", "--scale", "1", "--scale", "2",
                           "--output", "a.png", "--output", "b.png"});
  EXPECT_EQ(shown.entry, "preview");
  EXPECT_EQ(shown.scale, 2);
  EXPECT_EQ(shown.output, "b.png");
}

TEST(CommandLineTest, TakesOneActionOfAutostart) {
  const std::pair<const char*, AutostartAction> actions[] = {
      {"on", AutostartAction::on}, {"off", AutostartAction::off}, {"status", AutostartAction::status}};
  for (const auto& [word, action] : actions) {
    const auto parsed = parse({"autostart", word});
    const auto* line = std::get_if<CommandLine>(&parsed);
    ASSERT_NE(line, nullptr) << word;
    EXPECT_EQ(line->command, Command::autostart);
    EXPECT_EQ(line->autostart, action);
  }
}

TEST(CommandLineTest, NamesTheProgramTheNearestRightWordAndTheHelp) {
  const std::pair<std::vector<const char*>, const char*> cases[] = {
      {{"shwo"},
       "vamba-host: there is no command \"shwo\"; did you mean \"show\"?\nRun \"vamba-host --help\" for help.\n"},
      {{"frobnicate"}, "vamba-host: there is no command \"frobnicate\"\nRun \"vamba-host --help\" for help.\n"},
      {{"show", "--familly", "small"},
       "vamba-host: \"--familly\" was not expected; did you mean \"--family\"?\n"
       "Run \"vamba-host show --help\" for help.\n"},
      {{"watch", "--format", "wayber"},
       "vamba-host: --format: \"wayber\" is not one of text|json|waybar|line; did you mean \"waybar\"?\n"
       "Run \"vamba-host watch --help\" for help.\n"},
      {{"autostart", "onn"},
       "vamba-host: action: \"onn\" is not one of on|off|status; did you mean \"on\"?\n"
       "Run \"vamba-host autostart --help\" for help.\n"},
      {{"show", "--output", "a.bmp"},
       "vamba-host: --output: no format has the suffix \".bmp\"; name one with --format\n"
       "Run \"vamba-host show --help\" for help.\n"},
      {{"show", "--family"},
       "vamba-host: --family needs one of small|medium|large\nRun \"vamba-host show --help\" for help.\n"},
      {{"show", "--output"}, "vamba-host: --output needs a value: FILE\nRun \"vamba-host show --help\" for help.\n"},
      {{"--extension"}, "vamba-host: --extension needs a value: PATH\nRun \"vamba-host --help\" for help.\n"},
      {{"autostart"},
       "vamba-host: autostart needs one of on|off|status\nRun \"vamba-host autostart --help\" for help.\n"},
      {{"show", "--entry", ""},
       "vamba-host: --entry: an empty value names nothing\nRun \"vamba-host show --help\" for help.\n"},
      {{"help", "wach"},
       "vamba-host: there is no command \"wach\"; did you mean \"watch\"?\nRun \"vamba-host help --help\" for help.\n"},
  };
  for (const auto& [arguments, said] : cases) {
    const auto parsed = parse(arguments);
    ASSERT_TRUE(std::holds_alternative<Exit>(parsed)) << said;
    EXPECT_EQ(std::get<Exit>(parsed).standardError, said);
  }
}

std::string printed(std::initializer_list<const char*> arguments) {
  const auto parsed = parse(arguments);
  const auto* exit = std::get_if<Exit>(&parsed);
  return exit == nullptr || exit->status != 0 ? "no text" : exit->standardOutput;
}

TEST(CommandLineTest, ExplainsACommandAsItsOwnHelpDoes) {
  EXPECT_EQ(printed({"help", "show"}), printed({"show", "--help"}));
  EXPECT_EQ(printed({"help"}), printed({"--help"}));
}

TEST(CommandLineTest, CompletesCommandsOptionsAndTheirValues) {
  const auto words = [](std::initializer_list<const char*> arguments) {
    std::string all;
    for (const auto& line : std::vector<std::string>(absl::StrSplit(printed(arguments), '\n'))) {
      all += (all.empty() ? "" : " ") + line.substr(0, line.find('\t'));
    }
    return all;
  };
  EXPECT_EQ(words({"--complete", "s"}), "snapshot show sign-in sign-out ");
  EXPECT_EQ(words({"--complete", "show", "--f"}), "--family --format ");
  EXPECT_EQ(words({"--complete", "show", "--family", ""}), "small medium large ");
  EXPECT_EQ(words({"--complete", "show", "--family=l"}), "--family=large ");
  EXPECT_EQ(words({"--complete", "show", "--entry", "p"}), "preview placeholder :files ");
  EXPECT_EQ(words({"--complete", "show", "--output", ""}), ":files ");
  EXPECT_EQ(words({"--complete", "--extension", "show", "w"}), "watch ");
  EXPECT_EQ(words({"--complete", "autostart", "o"}), "on off ");
  EXPECT_EQ(words({"--complete", "watch", "--format", "w"}), "waybar ");
  EXPECT_EQ(words({"--complete", "help", "wat"}), "watch ");
  EXPECT_EQ(words({"--complete", "show", "x"}), "");
}

TEST(NearestWord, IsAtMostAThirdOfTheLettersAway) {
  const std::vector<std::string> words{"show", "snapshot", "watch", "--family"};
  EXPECT_EQ(nearestWord("shwo", words), "show");
  EXPECT_EQ(nearestWord("snapshto", words), "snapshot");
  EXPECT_EQ(nearestWord("wach", words), "watch");
  EXPECT_EQ(nearestWord("--familly", words), "--family");
  EXPECT_EQ(nearestWord("frob", words), std::nullopt);
  EXPECT_EQ(nearestWord("", words), std::nullopt);
  EXPECT_EQ(nearestWord(std::string(1000, 'w'), words), std::nullopt);
}

TEST(CommandLineTest, ExplainsItselfEverywhere) {
  for (const char* command : {"gallery", "placeholder", "snapshot", "timeline", "show", "watch", "desktop", "sign-in",
                              "sign-out", "doctor", "autostart"}) {
    for (const char* flag : {"--help", "--version"}) {
      const auto parsed = parse({command, flag});
      const auto* exit = std::get_if<Exit>(&parsed);
      ASSERT_NE(exit, nullptr) << command;
      EXPECT_EQ(exit->status, 0);
      EXPECT_NE(exit->standardOutput.find("vamba-host"), std::string::npos) << exit->standardOutput;
    }
  }
}

}  // namespace
}  // namespace host
