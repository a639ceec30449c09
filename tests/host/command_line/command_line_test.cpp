#include "host/command_line/command_line.hpp"

#include <initializer_list>
#include <vector>

#include <gtest/gtest.h>

namespace host {
namespace {

std::variant<CommandLine, Exit> parse(std::initializer_list<const char*> arguments) {
  std::vector<const char*> argv{"vamba-host"};
  argv.insert(argv.end(), arguments);
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
  EXPECT_EQ(empty.family, "systemMedium");
  EXPECT_EQ(empty.entry, "timeline");
  EXPECT_EQ(empty.format, Format::text);
  EXPECT_EQ(empty.extension, std::nullopt);
}

TEST(CommandLineTest, ReadsEveryOption) {
  const auto show = line({"--extension", "/x", "show", "--family", "small", "--entry", "-", "--format", "png",
                          "--output", "a.svg", "--scale", "1.5", "--appearance", "dark", "--outlines"});
  EXPECT_EQ(show.extension, "/x");
  EXPECT_EQ(show.family, "systemSmall");
  EXPECT_EQ(show.entry, "-");
  EXPECT_EQ(show.format, Format::png);
  EXPECT_EQ(show.output, "a.svg");
  EXPECT_EQ(show.scale, 1.5);
  EXPECT_EQ(show.appearance, Appearance::dark);
  EXPECT_TRUE(show.outlines);
  EXPECT_TRUE(line({"gallery", "--json"}).galleryAsJson);
  EXPECT_TRUE(line({"snapshot", "--preview"}).preview);
  EXPECT_EQ(line({"watch", "--format", "waybar", "--extension", "/x"}).extension, "/x");
}

TEST(CommandLineTest, TakesTheFormatFromTheOutputsSuffix) {
  const std::pair<const char*, Format> cases[] = {
      {"a.png", Format::png},   {"a.PNG", Format::png},  {"b/c.svg", Format::svg}, {"d.pdf", Format::pdf},
      {"e.json", Format::json}, {"f.txt", Format::text}, {"g", Format::text},      {"h.waybar", Format::text}};
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
      {"show", "--format", "waybar"},
      {"watch", "--format", "png"},
      {"show", "--scale", "0"},
      {"show", "--scale", "nan"},
      {"show", "--scale", "much"},
      {"show", "--appearance", "sepia"},
      {"gallery", "--family", "small"},
      {"show", "watch"},
      {"show", "--output"},
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

TEST(CommandLineTest, ExplainsItselfEverywhere) {
  for (const char* command : {"gallery", "placeholder", "snapshot", "timeline", "show", "watch", "autostart"}) {
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
