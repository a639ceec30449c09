// A whole day on its road from the service to the board, in each language, over plain HTTP and over HTTP/2 with TLS.
#include <algorithm>
#include <limits>
#include <map>

#include <absl/time/clock.h>

#include "base/text/instant.hpp"
#include "end_to_end/extension_fixture.hpp"
#include "support/nginx_server.hpp"

namespace end_to_end {
namespace {

using support::NginxProtocol;
using support::NginxRequest;
using support::NginxServer;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;

/// A rule for TZ by which it is about noon now, so that no midnight comes near whenever the test runs.
std::string zoneWhereItIsNoon() {
  const auto hour = absl::ToCivilHour(absl::Now(), absl::UTCTimeZone()).hour();
  return "TST" + std::to_string(hour - 12);
}

std::string fromNow(absl::Duration by) { return base::formatInstant(absl::Now() + by); }

/// A day of six tasks and four meetings; those that belong on the board say so.
struct ServerDay {
  std::string tasks = json{serverTask(1, "dziś", fromNow(absl::Minutes(-5))),
                           serverTask(2, "zrobione", fromNow(absl::Hours(-50)), "zrobione"),
                           serverTask(3, "dawno", fromNow(absl::Hours(-50))),
                           serverTask(4, "bez terminu", std::nullopt),
                           serverTask(5, "jutro", fromNow(absl::Hours(24))),
                           serverTask(6, "także dziś", fromNow(absl::Hours(-2)), "w_toku")}
                          .dump();
  std::string inbox = R"({"zadania": [{"id": "00000000-0000-4000-8000-000000000031", "tytul": "A"},
                                      {"id": "00000000-0000-4000-8000-000000000032", "tytul": "B"}]})";
  std::string meetings =
      json{serverMeeting(21, "jutro", fromNow(absl::Hours(24))),
           serverMeeting(22, "minęło", fromNow(absl::Minutes(-5))), serverMeeting(23, "zaraz", fromNow(absl::Hours(1))),
           serverMeeting(24, "pojutrze", fromNow(absl::Hours(48)))}
          .dump();
};

struct Words {
  std::string language;
  std::string overdue;
  std::string tomorrow;
};
const std::vector<Words> threeLanguages{
    {"pl", "zaległe", "jutro"}, {"en", "overdue", "tomorrow"}, {"lt", "pradelsta", "rytoj"}};

class ExtensionDayTest : public ServiceTest {
 protected:
  ExtensionDayTest() {
    environment["TZ"] = zoneWhereItIsNoon();
    service.answer(tasksTarget, {.body = day.tasks});
    service.answer(inboxTarget, {.body = day.inbox});
    service.answer(meetingsTarget, {.body = day.meetings});
  }

  std::string timeOf(const json& meeting) const {
    const auto offset = std::stoi(environment.at("TZ").substr(3));
    const auto start = base::parseInstant(meeting["kiedy"].get<std::string>());
    return absl::FormatTime("%H:%M", start.value(), absl::FixedTimeZone(-3600 * offset));
  }

  void expectWholeDay(const Words& words) {
    const json entry = loadEntry();
    ASSERT_FALSE(entry.contains("blad")) << entry;
    EXPECT_THAT(fieldOf(entry["zadania"], "tytul"), ElementsAre("dawno", "dziś", "także dziś"));
    EXPECT_THAT(fieldOf(entry["spotkania"], "tytul"), ElementsAre("zaraz", "jutro"));
    EXPECT_FALSE(entry["spotkania"][0].contains("projektNazwa"));
    EXPECT_EQ(entry["doDecyzji"], 2);
    EXPECT_THAT(textsOf(render(entry, "systemLarge")),
                ElementsAre("Vamba", "2 do decyzji", timeOf(entry["spotkania"][0]), "zaraz",
                            timeOf(entry["spotkania"][1]), "jutro", words.tomorrow, "#3", "dawno", "Pracownia",
                            words.overdue, "#1", "dziś", "Pracownia", "#6", "także dziś", "Pracownia"));
  }

  const ServerDay day;
};

TEST_F(ExtensionDayTest, LoadsAndDrawsAWholeDayInEachLanguageOverHttp) {
  for (const auto& words : threeLanguages) {
    SCOPED_TRACE(words.language);
    environment["LANGUAGE"] = words.language;
    restart();
    expectWholeDay(words);
  }
}

TEST_F(ExtensionDayTest, LoadsAndDrawsAWholeDayInEachLanguageOverHttp2) {
  NginxServer nginx({.protocol = NginxProtocol::tlsHttp2,
                     .bodies = {{tasksTarget, day.tasks}, {inboxTarget, day.inbox}, {meetingsTarget, day.meetings}},
                     .requiredAuthorization = "Bearer tajne-7"});
  items.store("adres-api", nginx.url("/api"));
  environment["SSL_CERT_FILE"] = nginx.authorityFile();
  for (const auto& words : threeLanguages) {
    SCOPED_TRACE(words.language);
    environment["LANGUAGE"] = words.language;
    restart();
    expectWholeDay(words);
    EXPECT_EQ(loadSentence(), "");
  }
  const auto requests = nginx.endAndReadLog();
  ASSERT_EQ(requests.size(), 18) << nginx.errorLog();
  EXPECT_THAT(requests, Each(AllOf(Field(&NginxRequest::protocol, "HTTP/2.0"), Field(&NginxRequest::status, "200"))));
  std::map<std::string, std::size_t> loads;
  for (std::size_t index = 0; index < requests.size(); ++index) {
    const std::size_t load = index / 3;
    EXPECT_EQ(loads.try_emplace(requests[index].connection, load).first->second, load) << "a connection of two loads";
  }
}

TEST_F(ExtensionDayTest, TokenWithALineEndCannotGoOverHttp2) {
  NginxServer nginx({.protocol = NginxProtocol::tlsHttp2, .bodies = {{tasksTarget, "[]"}}});
  signInTo(nginx.url("/api"), "tajne-7\n");
  environment["SSL_CERT_FILE"] = nginx.authorityFile();
  EXPECT_EQ(loadSentence(), noConnection);
  EXPECT_EQ(nginx.endAndReadLog().size(), 0);
  EXPECT_TRUE(items.holds("token-urzadzenia"));
}

TEST_F(ExtensionDayTest, ServiceWhoseCertificateNobodyVouchesForIsNoConnection) {
  NginxServer nginx({.bodies = {{tasksTarget, "[]"}}});
  items.store("adres-api", nginx.url("/api"));
  EXPECT_EQ(loadSentence(), noConnection);
  EXPECT_EQ(nginx.endAndReadLog().size(), 0) << "the token was not sent";
}

TEST_F(ExtensionDayTest, LanguageIsTheFirstThatTheEnvironmentNames) {
  const std::vector<std::pair<std::map<std::string, std::string>, std::string>> cases{
      {{}, "jutro"},
      {{{"LANGUAGE", "en"}}, "tomorrow"},
      {{{"LANGUAGE", "lt:en:pl"}}, "rytoj"},
      {{{"LANGUAGE", "de:en"}}, "jutro"},
      {{{"LANGUAGE", "C:en"}}, "tomorrow"},
      {{{"LANGUAGE", "pl"}, {"LC_ALL", "en_US.UTF-8"}}, "jutro"},
      {{{"LC_ALL", "en_GB.UTF-8"}, {"LANG", "pl_PL.UTF-8"}}, "tomorrow"},
      {{{"LC_MESSAGES", "lt_LT@euro"}, {"LANG", "en_US"}}, "rytoj"},
      {{{"LANG", "LT"}}, "rytoj"},
      {{{"LANG", "EN-gb"}}, "tomorrow"},
      {{{"LANG", "sr_RS@latin"}}, "jutro"},
      {{{"LANG", "C.UTF-8"}}, "jutro"},
      {{{"LANGUAGE", ""}, {"LANG", "en_US.UTF-8"}}, "tomorrow"},
  };
  const auto languageless = [this] {
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) environment.erase(name);
  };
  const json entry = loadEntry();
  for (const auto& [variables, tomorrow] : cases) {
    languageless();
    for (const auto& [name, value] : variables) environment[name] = value;
    restart();
    EXPECT_THAT(textsOf(render(entry)), testing::Contains(tomorrow).Times(tomorrow == "jutro" ? 2 : 1))
        << json(variables);
  }
}

TEST_F(ExtensionDayTest, SentencesAndGalleryAreInTheLanguageButForTheServersError) {
  struct Case {
    std::string language, name, signIn, network, refresh, expired, sample, nothing;
  };
  const std::vector<Case> cases{
      {"en", "Vamba — meetings and tasks", "Sign in to the Vamba app.", "No connection to Vamba.", "Could not refresh.",
       "The credentials have expired — sign in again.", "Send the grant application", "Nothing for today."},
      {"lt", "Vamba — susitikimai ir užduotys", "Prisijunkite Vamba programoje.", "Nėra ryšio su Vamba.",
       "Nepavyko atnaujinti.", "Prisijungimo duomenys nustojo galioti — prisijunkite iš naujo.",
       "Išsiųsti paraišką dotacijai", "Šiandienai nieko."},
  };
  for (const auto& each : cases) {
    environment["LANGUAGE"] = each.language;
    restart();
    EXPECT_EQ(extension().call("widgets")["result"][0]["displayName"], each.name);
    json sample = extension().call("placeholder", boardParams())["result"]["entry"];
    EXPECT_EQ(sample["zadania"][0]["tytul"], each.sample);
    sample["zadania"] = sample["spotkania"] = json::array();
    EXPECT_THAT(textsOf(render(sample)), testing::Contains(each.nothing));

    service.answer(tasksTarget, {.status = 500});
    EXPECT_EQ(loadSentence(), serverError(500));
    service.answer(tasksTarget, {.body = "{"});
    EXPECT_EQ(loadSentence(), each.refresh);
    service.script(tasksTarget, {support::Close{}});
    EXPECT_EQ(loadSentence(), each.network);

    const auto released = std::make_shared<support::Event>();
    everyAnswer({support::Await{released}, support::Send{support::HttpAnswer{.status = 401}.bytes()}});
    const auto before = service.requests().size();
    const int loading = extension().ask("timeline", boardParams());
    ASSERT_TRUE(service.waitForRequests(before + 3));
    released->set();
    EXPECT_EQ(extension().answerTo(loading)["result"]["entries"][0]["blad"], each.expired);
    EXPECT_EQ(loadSentence(), each.signIn);

    items.store("token-urzadzenia", "tajne-7");
    service.answer(tasksTarget, {.body = day.tasks});
    service.answer(inboxTarget, {.body = day.inbox});
    service.answer(meetingsTarget, {.body = day.meetings});
  }
}

TEST_F(ExtensionDayTest, ReloadDateIsAQuarterOfAnHourAfterTheLoad) {
  const auto before = absl::Now();
  const json answer = extension().call("timeline", boardParams());
  const auto after = absl::Now();
  ASSERT_EQ(answer["result"]["entries"].size(), 1);
  EXPECT_EQ(answer["result"]["policy"]["type"], "after");
  const auto date = base::parseInstant(answer["result"]["entries"][0]["date"].get<std::string>());
  const auto reload = base::parseInstant(answer["result"]["policy"]["date"].get<std::string>());
  ASSERT_TRUE(date && reload);
  EXPECT_LE(before, *date);
  EXPECT_LE(*date + absl::Minutes(15), *reload);
  EXPECT_LE(*reload, after + absl::Minutes(15));
}

TEST_F(ExtensionDayTest, SizesDrawTheSameEntryDifferently) {
  const json entry = loadEntry();
  const json small = render(entry, "systemSmall");
  EXPECT_NE(small, render(entry, "systemMedium"));
  EXPECT_EQ(render(entry, "systemMedium"), render(entry, "systemLarge"));
  EXPECT_THAT(textsOf(small), ElementsAre("Vamba", "2 do decyzji", timeOf(entry["spotkania"][0]), "zaraz", "#3",
                                          "dawno", "zaległe", "i 3 więcej"));
  EXPECT_EQ(small["type"], "vstack");
  EXPECT_EQ(small["containerBackground"], "background");
  EXPECT_EQ(small["padding"], (json{{"top", 12}, {"leading", 12}, {"bottom", 12}, {"trailing", 12}}));
}

TEST_F(ExtensionDayTest, DrawsAnEntryAsItIsHandedBack) {
  // What no load would ever choose: finished, undated and far-off rows, in an order of its own.
  json entry = loadEntry();
  const auto task = [](std::int64_t number, const std::string& title) {
    return json{{"id", "ABCDEF00-0000-4000-8000-00000000000A"},
                {"numer", number},
                {"tytul", title},
                {"status", "zrobione"},
                {"projektNazwa", ""},
                {"obcy", {1, 2}}};
  };
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  entry["zadania"] = {task(most, "największe"), task(least, "najmniejsze"), task(0, "\x1b[31m <b>&amp;\n\t\\")};
  entry["zadania"][0]["termin"] = "1999-12-31T23:00:00Z";
  entry["spotkania"] = {{{"id", "abcdef00-0000-4000-8000-00000000000b"},
                         {"tytul", "dawno temu"},
                         {"kiedy", "1999-12-31T23:59:59.999999999+00:00"},
                         {"czasTrwaniaMin", least},
                         {"projektNazwa", "P"}}};
  entry["doDecyzji"] = most;
  entry["obcy"] = true;
  environment["TZ"] = "UTC0";
  restart();
  const json view = render(entry);
  EXPECT_THAT(textsOf(view), ElementsAre("Vamba", "9223372036854775807 do decyzji", "23:59", "dawno temu", "P", "jutro",
                                         "#9223372036854775807", "największe", "", "zaległe", "#-9223372036854775808",
                                         "najmniejsze", "", "#0", "\x1b[31m <b>&amp;\n\t\\", ""));
  entry["blad"] = "Zdanie hosta";
  EXPECT_THAT(textsOf(render(entry)), ElementsAre("Vamba", "9223372036854775807 do decyzji", "Zdanie hosta"));
}

}  // namespace
}  // namespace end_to_end
