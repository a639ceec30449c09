#include "desktop/placement/placement_document.hpp"

#include <limits>
#include <random>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "desktop/placement/printing.hpp"

namespace desktop {
namespace {

using nlohmann::json;

constexpr const char* sampleText = R"({
  "format": "vamba-placements",
  "version": 1,
  "widgets": [
    {
      "corner": "topRight",
      "family": "systemMedium",
      "id": 3,
      "kind": "Dzien",
      "monitor": {
        "connector": "DP-1",
        "make": "Acme",
        "model": "P27",
        "serial": "A1"
      },
      "x": 20,
      "y": 40
    }
  ]
}
)";

const Placed samplePlaced{
    3, "Dzien", protocol::WidgetFamily::systemMedium, {{"Acme", "P27", "A1", "DP-1"}, Corner::topRight, {20, 40}}};

json sampleJson() { return json::parse(sampleText); }

TEST(PlacementDocument, IsReadAndWrittenAsShown) {
  const auto document = readPlacements(sampleText);
  ASSERT_TRUE(document) << document.error();
  EXPECT_EQ(document->dropped, 0U);
  EXPECT_EQ(document->state.placements, Placements({samplePlaced}));
  EXPECT_EQ(writePlacements({document->state.placements}, {}), sampleText);
}

TEST(PlacementDocument, HoldsNoWidgetAtAll) {
  const auto text = writePlacements({}, {});
  EXPECT_EQ(readPlacements(text).value().state.placements, Placements());
}

TEST(PlacementDocument, SaysWhyNothingOfItCanBeUsed) {
  const auto changed = [](const char* key, const json& value) {
    json document = sampleJson();
    document[key] = value;
    return document.dump();
  };
  const struct {
    std::string text;
    const char* reason;
  } cases[] = {
      {"[]", "it is no placements file"},
      {"{}", "it is no placements file"},
      {"7", "it is no placements file"},
      {R"({"widgets": []})", "it is no placements file"},
      {changed("format", "something-else"), "it is no placements file"},
      {changed("format", 1), "it is no placements file"},
      {changed("version", 2), "its version is not 1"},
      {changed("version", 0), "its version is not 1"},
      {changed("version", "1"), "its version is not 1"},
      {changed("version", 1e300), "its version is not 1"},
      {changed("widgets", json::object()), "it holds no list of widgets"},
      {changed("widgets", nullptr), "it holds no list of widgets"},
      {changed("widgets", std::vector<int>(mostCopies + 1)), "it holds more than 100 widgets"},
  };
  for (const auto& [text, reason] : cases) EXPECT_EQ(readPlacements(text).error(), reason) << text;
  const std::string whole = sampleText;
  for (const auto& noJson : {std::string(), whole.substr(0, whole.size() / 2), whole + "x", std::string("\xff\xfe"),
                             std::string(1000, '\0'), std::string(100000, '[')}) {
    EXPECT_FALSE(readPlacements(noJson)) << noJson.substr(0, 80);
  }
}

TEST(PlacementDocument, DropsAnEntryThatDescribesNoCopyAndKeepsTheOthers) {
  const struct {
    const char* path;
    json value;
  } cases[] = {
      {"/id", 0},
      {"/id", -3},
      {"/id", 2147483648},
      {"/id", 1.5},
      {"/id", "3"},
      {"/kind", ""},
      {"/kind", 7},
      {"/kind", std::string(257, 'a')},
      {"/family", "systemExtraLarge"},
      {"/family", nullptr},
      {"/monitor", "DP-1"},
      {"/monitor/serial", 12},
      {"/monitor/make", std::string(257, 'a')},
      {"/corner", "middle"},
      {"/corner", 1},
      {"/x", 1e300},
      {"/x", -1000001},
      {"/x", 0.5},
      {"/x", "20"},
      {"/y", nullptr},
      {"/y", 18446744073709551615U},
      {"/zoom", 49},
      {"/zoom", 301},
      {"/zoom", 100.5},
      {"/zoom", "100"},
      {"", json::array()},
      {"", nullptr},
  };
  for (const auto& [path, value] : cases) {
    json document = sampleJson();
    json bad = document["widgets"][0];
    bad["id"] = 7;
    bad[json::json_pointer(path)] = value;
    json last = document["widgets"][0];
    last["id"] = 9;
    document["widgets"].push_back(bad);
    document["widgets"].push_back(last);
    const auto read = readPlacements(document.dump());
    ASSERT_TRUE(read) << read.error();
    EXPECT_EQ(read->dropped, 1U) << bad.dump();
    Placed nine = samplePlaced;
    nine.id = 9;
    EXPECT_EQ(read->state.placements, Placements({samplePlaced, nine})) << bad.dump();
  }
}

TEST(PlacementDocument, DropsTheSecondOfTwoWithOneId) {
  json document = sampleJson();
  document["widgets"].push_back(document["widgets"][0]);
  const auto read = readPlacements(document.dump());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->dropped, 1U);
  EXPECT_EQ(read->state.placements, Placements({samplePlaced}));
}

TEST(PlacementDocument, ReadsWholeNumbersHoweverSpelt) {
  std::string text = sampleText;
  text.replace(text.find("\"x\": 20"), 7, "\"x\": 2e1");
  EXPECT_EQ(readPlacements(text).value().state.placements, Placements({samplePlaced}));
}

TEST(PlacementDocument, KeepsKeysThatALaterVersionWrote) {
  json document = sampleJson();
  document["theme"] = {{"name", "quiet"}};
  document["widgets"][0]["locked"] = true;
  document["widgets"][0]["monitor"]["scale"] = 1.5;
  Placements placements = readPlacements(document.dump()).value().state.placements;
  placements.setPlace(3, {{"Acme", "P27", "A2", "DP-2"}, Corner::bottomLeft, {0, 0}});
  placements.add("Dzien", protocol::WidgetFamily::systemSmall, samplePlaced.place);
  const json written = json::parse(writePlacements({placements}, document.dump()));
  EXPECT_EQ(written["theme"], document["theme"]);
  EXPECT_EQ(written["widgets"][0]["locked"], true);
  EXPECT_EQ(written["widgets"][0]["monitor"]["scale"], 1.5);
  EXPECT_EQ(written["widgets"][0]["monitor"]["serial"], "A2");
  EXPECT_FALSE(written["widgets"][1].contains("locked"));
  EXPECT_EQ(readPlacements(written.dump()).value().state.placements, placements);
}

TEST(PlacementDocument, ReadsBackWhateverWasPlaced) {
  std::mt19937_64 generator(20);
  const auto roll = [&](int first, int last) { return std::uniform_int_distribution<int>(first, last)(generator); };
  const char* names[] = {"", "DP-1", "Łódź \"27\"\\", "\n\t\x01", "😀", "%s$HOME"};
  for (int round = 0; round < 500; ++round) {
    std::vector<Placed> all;
    for (int id = 1; id <= roll(0, 8); ++id) {
      const MonitorIdentity monitor{names[roll(0, 5)], names[roll(0, 5)], names[roll(0, 5)], names[roll(0, 5)]};
      const Point inset{roll(-farthestInset, farthestInset), roll(-farthestInset, farthestInset)};
      all.push_back({roll(0, 1) == 0 ? id : std::numeric_limits<int>::max() - id,
                     names[roll(1, 5)],
                     static_cast<protocol::WidgetFamily>(roll(0, 2)),
                     {monitor, static_cast<Corner>(roll(0, 3)), inset}});
    }
    const Placements placements(all);
    const auto read = readPlacements(writePlacements({placements}, {}));
    ASSERT_TRUE(read) << "round " << round;
    ASSERT_EQ(read->state.placements, placements) << "round " << round;
    ASSERT_EQ(read->dropped, 0U) << "round " << round;
  }
}

TEST(PlacementDocument, FileOfAnEarlierVersionHasTheUsualSettingsAndZoom) {
  const auto document = readPlacements(sampleText);
  ASSERT_TRUE(document);
  EXPECT_EQ(document->state.settings, DesktopSettings());
  for (const Placed& placed : document->state.placements.all()) EXPECT_EQ(placed.zoom, 100);
}

TEST(PlacementDocument, KeepsSettingsAndZoom) {
  Placements placements = readPlacements(sampleText)->state.placements;
  const int id = placements.all()[0].id;
  placements.setZoom(id, 125);
  const DesktopState state{placements, {Scheme::dark, Background::none, true}};
  const std::string text = writePlacements(state, sampleText);
  const json written = json::parse(text);
  EXPECT_EQ(written["appearance"], "dark");
  EXPECT_EQ(written["background"], "none");
  EXPECT_EQ(written["locked"], true);
  EXPECT_EQ(written["widgets"][0]["zoom"], 125);
  const auto read = readPlacements(text);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->state, state);

  placements.setZoom(id, 100);
  const DesktopState usual{placements, {}};
  const auto back = readPlacements(writePlacements(usual, text));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->state, usual);
}

TEST(PlacementDocument, SettingWithAnUnknownValueCountsAsAbsentAndStaysUntilItIsChanged) {
  json document = sampleJson();
  document["appearance"] = "sepia";
  document["background"] = 7;
  document["locked"] = "yes";
  const auto read = readPlacements(document.dump());
  ASSERT_TRUE(read);
  EXPECT_EQ(read->state.settings, DesktopSettings());
  json written = json::parse(writePlacements({read->state.placements, {.locked = true}}, document.dump()));
  EXPECT_EQ(written["appearance"], "sepia");
  EXPECT_EQ(written["background"], 7);
  EXPECT_EQ(written["locked"], true);
}

}  // namespace
}  // namespace desktop
