// Every method and every error of the protocol, asked of the built program.
#include <set>

#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

class ExtensionProtocolTest : public ExtensionTest {
 protected:
  json answerToLine(const std::string& line) {
    extension().writeLine(line);
    return extension().answer();
  }
};

json errorOf(int code) { return {{"code", code}}; }

/// Whether the answer is an error of this code, with this id and a sentence.
testing::AssertionResult isError(const json& answer, int code, const json& id) {
  const bool right = answer.is_object() && answer.value("jsonrpc", "") == "2.0" && !answer.contains("result") &&
                     answer.contains("id") && answer["id"] == id && answer.contains("error") &&
                     answer["error"]["code"] == code && answer["error"]["message"].is_string() &&
                     !answer["error"]["message"].get<std::string>().empty();
  return right ? testing::AssertionSuccess()
               : testing::AssertionFailure() << "expected " << errorOf(code) << " for " << id << ", got " << answer;
}

TEST_F(ExtensionProtocolTest, DeclaresTheOneWidgetWithItsNameAndSizes) {
  const json answer = extension().call("widgets");
  EXPECT_EQ(answer,
            (json{{"jsonrpc", "2.0"},
                  {"id", 1},
                  {"result",
                   {{{"version", 1},
                     {"kind", kind},
                     {"displayName", "Vamba — spotkania i zadania"},
                     {"description", "Najbliższe spotkania oraz zadania: zaległe, na dziś i bez terminu."},
                     {"families", {"systemSmall", "systemMedium", "systemLarge"}},
                     {"opens", {{{"desktopEntry", "pl.ferol.vamba"}}, {{"url", "https://vamba.ferol.pl"}}}}}}}}));
}

TEST_F(ExtensionProtocolTest, ShowsTheSampleDayWithoutKeychainOrNetwork) {
  for (const auto& [method, params] : std::vector<std::pair<std::string, json>>{
           {"placeholder", boardParams()},
           {"snapshot", {{"kind", kind}, {"family", "systemSmall"}, {"isPreview", true}}}}) {
    const json entry = extension().call(method, params)["result"]["entry"];
    EXPECT_THAT(fieldOf(entry["zadania"], "tytul"),
                ElementsAre("Wysłać wniosek grantowy", "Przejrzeć transkrypt narady"));
    EXPECT_EQ(entry["zadania"][0]["termin"], entry["date"]);
    EXPECT_FALSE(entry["zadania"][1].contains("termin")) << "an absent optional is an absent key";
    EXPECT_THAT(fieldOf(entry["spotkania"], "tytul"), ElementsAre("Narada zespołu"));
    EXPECT_EQ(entry["spotkania"][0]["czasTrwaniaMin"], 60);
    EXPECT_EQ(entry["doDecyzji"], 3);
    EXPECT_FALSE(entry.contains("blad"));
    EXPECT_THAT(entry["date"].get<std::string>(),
                MatchesRegex(R"([0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\.[0-9]*[1-9])?Z)"));
    EXPECT_THAT(entry["spotkania"][0]["id"].get<std::string>(),
                MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}"));
  }
}

TEST_F(ExtensionProtocolTest, LiveSnapshotAndTimelineSayThatNobodyIsSignedIn) {
  const json snapshot = extension().call("snapshot", {{"kind", kind}, {"family", "systemLarge"}, {"isPreview", false}});
  EXPECT_EQ(snapshot["result"]["entry"]["blad"], signIn);
  const json timeline = extension().call("timeline", boardParams());
  EXPECT_EQ(timeline["result"]["entries"].size(), 1);
  EXPECT_EQ(timeline["result"]["entries"][0]["blad"], signIn);
  EXPECT_EQ(timeline["result"]["policy"]["type"], "after");
}

TEST_F(ExtensionProtocolTest, BringsEveryIdBackExactly) {
  for (const std::string id : {"0", "-1", "9223372036854775807", "-9223372036854775808", "18446744073709551615",
                               R"("tekst")", R"("")", R"("\u0119\n\"")", R"("9223372036854775807")", "null"}) {
    const json answer = answerToLine(R"({"jsonrpc":"2.0","method":"widgets","id":)" + id + "}");
    EXPECT_TRUE(answer.contains("result")) << id << ": " << answer;
    EXPECT_EQ(answer["id"], json::parse(id));
    EXPECT_EQ(answer["id"].dump(), json::parse(id).dump()) << "and not as a rounded number";
  }
}

TEST_F(ExtensionProtocolTest, RefusesEachBadLineWithItsCodeAndGoesOn) {
  struct Case {
    std::string line;
    int code;
    json id;
  };
  const std::string nested(100'000, '[');
  const std::vector<Case> cases{
      {"", -32700, nullptr},
      {"no JSON at all", -32700, nullptr},
      {"{\"jsonrpc\":\"2.0\"", -32700, nullptr},
      {R"({"jsonrpc":"2.0","id":1,"method":"widgets"} x)", -32700, nullptr},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"wid\xff\xfegets\"}", -32700, nullptr},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"wid\xed\xa0\x80gets\"}", -32700, nullptr},
      {R"({"jsonrpc":"2.0","id":1,"method":"widgets"})" + std::string(1, '\0'), -32700, nullptr},
      {nested, -32700, nullptr},
      {R"({"jsonrpc":"2.0","id":1,"method":"widgets","params":)" + nested + "}", -32700, nullptr},
      {"null", -32600, nullptr},
      {"7", -32600, nullptr},
      {R"("widgets")", -32600, nullptr},
      {"[]", -32600, nullptr},
      {R"([{"jsonrpc":"2.0","id":1,"method":"widgets"},{"jsonrpc":"2.0","id":2,"method":"widgets"}])", -32600, nullptr},
      {"{}", -32600, nullptr},
      {R"({"jsonrpc":"2.0","id":4})", -32600, 4},
      {R"({"jsonrpc":"2.0","id":4,"method":7})", -32600, 4},
      {R"({"jsonrpc":"1.0","id":"a","method":"widgets"})", -32600, "a"},
      {R"({"id":5,"method":"widgets"})", -32600, 5},
      {R"({"jsonrpc":"2.0","id":true,"method":"widgets"})", -32600, nullptr},
      {R"({"jsonrpc":"2.0","id":[1],"method":"widgets"})", -32600, nullptr},
      {R"({"jsonrpc":"2.0","id":6,"method":"Widgets"})", -32601, 6},
      {R"({"jsonrpc":"2.0","id":6,"method":""})", -32601, 6},
      {R"({"jsonrpc":"2.0","id":"x","method":"rpc.discover"})", -32601, "x"},
  };
  for (const auto& each : cases) {
    EXPECT_TRUE(isError(answerToLine(each.line), each.code, each.id)) << each.line.substr(0, 200);
  }
  EXPECT_TRUE(extension().call("widgets").contains("result"));
}

TEST_F(ExtensionProtocolTest, NamesTheParameterThatIsWrong) {
  const json entry = extension().call("placeholder", boardParams())["result"]["entry"];
  const auto rendering = [](const json& given) {
    return json{{"kind", kind}, {"family", "systemSmall"}, {"entry", given}};
  };
  const auto without = [&entry](const char* field) {
    json copy = entry;
    copy.erase(field);
    return copy;
  };
  const auto with = [&entry](const json::json_pointer& field, const json& value) {
    json copy = entry;
    copy[field] = value;
    return copy;
  };
  struct Case {
    std::string method;
    json params;
    std::string named;
  };
  const std::vector<Case> cases{
      {"placeholder", nullptr, "params"},
      {"placeholder", json::array({kind, "systemSmall"}), "params"},
      {"placeholder", json::object(), "kind"},
      {"timeline", {{"family", "systemSmall"}}, "kind"},
      {"timeline", {{"kind", "pl.ferol.vamba.widzety.noc"}, {"family", "systemSmall"}}, "kind"},
      {"timeline", {{"kind", 1}, {"family", "systemSmall"}}, "kind"},
      {"timeline", {{"kind", kind}}, "family"},
      {"timeline", {{"kind", kind}, {"family", "systemExtraLarge"}}, "family"},
      {"placeholder", {{"kind", kind}, {"family", "systemsmall"}}, "family"},
      {"snapshot", boardParams(), "isPreview"},
      {"snapshot", {{"kind", kind}, {"family", "systemSmall"}, {"isPreview", "true"}}, "isPreview"},
      {"render", boardParams(), "entry"},
      {"render", rendering(nullptr), "entry"},
      {"render", rendering(json::array()), "entry"},
      {"render", rendering(without("date")), "date"},
      {"render", rendering(without("zadania")), "zadania"},
      {"render", rendering(without("spotkania")), "spotkania"},
      {"render", rendering(without("doDecyzji")), "doDecyzji"},
      {"render", rendering(with(json::json_pointer("/blad"), 7)), "blad"},
      {"render", rendering(with(json::json_pointer("/date"), "2025-03-14")), "date"},
      {"render", rendering(with(json::json_pointer("/doDecyzji"), 1.5)), "doDecyzji"},
      {"render", rendering(with(json::json_pointer("/zadania/1/numer"), "12")), "zadania[1].numer"},
      {"render", rendering(with(json::json_pointer("/zadania/0/numer"), 9223372036854775808U)), "zadania[0].numer"},
      {"render", rendering(with(json::json_pointer("/zadania/0/id"), "12")), "zadania[0].id"},
      {"render", rendering(with(json::json_pointer("/spotkania/0/kiedy"), "jutro")), "spotkania[0].kiedy"},
      {"render", rendering(with(json::json_pointer("/spotkania/0/czasTrwaniaMin"), nullptr)),
       "spotkania[0].czasTrwaniaMin"},
  };
  for (const auto& each : cases) {
    const int id = extension().ask(each.method, each.params);
    const json answer = extension().answerTo(id);
    EXPECT_TRUE(isError(answer, -32602, id)) << each.method << " " << each.params;
    EXPECT_THAT(answer["error"]["message"].get<std::string>(), HasSubstr(each.named)) << each.params;
  }
}

TEST_F(ExtensionProtocolTest, AnswersNoNotification) {
  extension().writeLine(R"({"jsonrpc":"2.0","method":"widgets"})");
  extension().writeLine(R"({"jsonrpc":"2.0","method":"nothing"})");
  extension().writeLine(R"({"jsonrpc":"2.0","method":"placeholder","params":{}})");
  extension().writeLine(R"({"jsonrpc":"2.0","id":"after","method":"widgets"})");
  EXPECT_EQ(extension().answer(100s)["id"], "after");
  extension().closeInput();
  EXPECT_EQ(extension().exitStatus(), 0);
  EXPECT_EQ(extension().line(), std::nullopt);
}

TEST_F(ExtensionProtocolTest, ReadsALineOfSixtyFourMebibytesAndReadsPastALongerOne) {
  const std::string begin = R"({"jsonrpc":"2.0","id":1,"method":"widgets","params":{"padding":")";
  const std::string end = "\"}}";
  const std::size_t longest = std::size_t{64} << 20;
  ASSERT_TRUE(extension().writeLine(begin + std::string(longest - begin.size() - end.size(), 'x') + end));
  EXPECT_TRUE(extension().answer(100s).contains("result"));
  ASSERT_TRUE(extension().writeLine(begin + std::string(longest + 1 - begin.size() - end.size(), 'x') + end));
  EXPECT_TRUE(isError(extension().answer(100s), -32600, nullptr));
  EXPECT_TRUE(extension().call("widgets").contains("result"));
}

TEST_F(ExtensionProtocolTest, TakesLinesInAnyPiecesAndManyAtOnce) {
  const std::string request = R"({"jsonrpc":"2.0","id":1,"method":"widgets"})";
  for (const char byte : request) ASSERT_TRUE(extension().write(std::string(1, byte)));
  ASSERT_TRUE(extension().write("\r\n"));
  EXPECT_EQ(extension().answer()["id"], 1);
  std::string many;
  for (int id = 0; id < 500; ++id) {
    many += json{{"jsonrpc", "2.0"}, {"id", id}, {"method", "placeholder"}, {"params", boardParams()}}.dump() + "\n";
  }
  ASSERT_TRUE(extension().write(many));
  std::set<int> answered;
  for (int count = 0; count < 500; ++count) answered.insert(extension().answer().value("id", -1));
  EXPECT_EQ(answered.size(), 500);
}

}  // namespace
}  // namespace end_to_end
