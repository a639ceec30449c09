// Whatever goes wrong on the way to the service, the board has the right sentence for it.
#include <algorithm>
#include <map>
#include <tuple>

#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

using support::Await;
using support::Close;
using support::Event;
using support::HttpAnswer;
using support::Reset;
using support::Send;
using support::Stall;
using support::Step;
using testing::HasSubstr;
using testing::Not;

using ExtensionFailureTest = ServiceTest;

TEST_F(ExtensionFailureTest, AsksToSignInWithoutATokenAndAsksTheServiceNothing) {
  for (const std::string token : {"", "\xff\xfe"}) {
    items.store("token-urzadzenia", token);
    EXPECT_EQ(loadSentence(), signIn);
  }
  std::filesystem::remove(items.fileOf("token-urzadzenia"));
  EXPECT_EQ(loadSentence(), signIn);
  EXPECT_EQ(service.connectionCount(), 0);
}

TEST_F(ExtensionFailureTest, RefusedTokenIsDeletedAndTheAddressKept) {
  // Held until all three have read the token: a faster refusal would leave a slower request without one.
  const auto released = std::make_shared<Event>();
  everyAnswer({Await{released}, Send{HttpAnswer{.status = 401, .body = R"({"zadania": []})"}.bytes()}});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  released->set();
  const json entry = extension().answerTo(loading)["result"]["entries"][0];
  EXPECT_EQ(entry["blad"], expired);
  EXPECT_EQ(entry["zadania"], json::array());
  EXPECT_EQ(entry["doDecyzji"], 0);
  EXPECT_FALSE(items.holds("token-urzadzenia"));
  EXPECT_TRUE(items.holds("adres-api"));
  EXPECT_EQ(loadSentence(), signIn);
  EXPECT_EQ(service.requests().size(), 3) << "without a token nothing is asked";

  items.store("token-urzadzenia", "nowe");
  service.answer(tasksTarget, {.body = "[]"});
  service.answer(inboxTarget, {.body = R"({"zadania": []})"});
  service.answer(meetingsTarget, {.body = "[]"});
  EXPECT_EQ(loadSentence(), "") << "a new token counts at once";
}

TEST_F(ExtensionFailureTest, EachAnswerOfTheServiceHasItsSentence) {
  struct Case {
    std::string what;
    std::vector<Step> steps;
    std::string sentence;
  };
  const auto status = [](int number) {
    return std::vector<Step>{Send{HttpAnswer{.status = number, .body = "[]"}.bytes()}};
  };
  const auto body = [](const std::string& text) { return std::vector<Step>{Send{HttpAnswer{.body = text}.bytes()}}; };
  const std::vector<Case> cases{
      {"500", status(500), serverError(500)},
      {"403", status(403), serverError(403)},
      {"404", status(404), serverError(404)},
      {"300", status(300), serverError(300)},
      {"999", status(999), serverError(999)},
      {"a redirect",
       {Send{HttpAnswer{.status = 302, .headers = {{"Location", service.url("/elsewhere")}}}.bytes()}},
       serverError(302)},
      {"a permanent redirect",
       {Send{HttpAnswer{.status = 308, .headers = {{"Location", service.url("/elsewhere")}}}.bytes()}},
       serverError(308)},
      {"299", status(299), ""},
      {"204", {Send{HttpAnswer{.status = 204}.bytes()}}, notRefreshed},
      {"a reset", {Reset{}}, noConnection},
      {"nothing", {Close{}}, noConnection},
      {"cut in the status line", {Send{"HTTP/1.1 20"}, Close{}}, noConnection},
      {"cut in the headers", {Send{"HTTP/1.1 200 OK\r\nContent-Le"}, Close{}}, noConnection},
      {"cut between headers and blank line", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 2\r\n"}, Close{}}, noConnection},
      {"cut in the body", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 20\r\n\r\n[]"}, Close{}}, noConnection},
      {"cut in a chunk", {Send{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n9\r\n[]"}, Close{}}, noConnection},
      {"HTTP/0.9", {Send{"[]"}, Close{}}, serverError(0)},
      {"a closed connection as the end", {Send{"HTTP/1.1 200 OK\r\n\r\n[]"}, Close{}}, ""},
      {"no JSON", body("<html>"), notRefreshed},
      {"an empty body", body(""), notRefreshed},
      {"a cut array", body("["), notRefreshed},
      {"text behind the array", body("[] []"), notRefreshed},
      {"an object for an array", body(R"({"zadania": []})"), notRefreshed},
      {"null", body("null"), notRefreshed},
      {"bytes that are not UTF-8", body("[\"\xff\"]"), notRefreshed},
      {"a NUL behind the array", body(std::string("[]\0", 3)), notRefreshed},
  };
  for (const auto& each : cases) {
    service.script(tasksTarget, each.steps);
    EXPECT_EQ(loadSentence(), each.sentence) << each.what;
  }
  for (const auto& request : service.requests()) EXPECT_NE(request.target, "/elsewhere");
}

TEST_F(ExtensionFailureTest, OneWrongRecordOrIgnoredKeyMakesTheWholeDayUnreadable) {
  const json task = serverTask(1, "Zadanie", "2025-03-14");
  const json meeting = serverMeeting(2, "Narada", "2025-03-14T09:30:00Z");
  const auto without = [](json record, const char* key) {
    record.erase(key);
    return json::array({record}).dump();
  };
  const auto with = [](json record, const char* key, const json& value) {
    record[key] = value;
    return json::array({record}).dump();
  };
  // An extra key whose value is written by hand.
  const auto beside = [](const json& record, const std::string& raw) {
    std::string text = record.dump();
    return "[" + text.insert(text.size() - 1, ",\"uwagi\":" + raw) + "]";
  };
  const std::vector<std::tuple<std::string, std::string, std::string>> cases{
      {tasksTarget, without(task, "projekt_nazwa"), notRefreshed},
      {tasksTarget, with(task, "projekt_nazwa", nullptr), notRefreshed},
      {tasksTarget, with(task, "numer", 7.5), notRefreshed},
      {tasksTarget, with(task, "numer", "7"), notRefreshed},
      {tasksTarget, with(task, "id", "7"), notRefreshed},
      {tasksTarget, with(task, "termin", ""), notRefreshed},
      {tasksTarget, with(task, "termin", "14.03.2025"), notRefreshed},
      {tasksTarget, with(task, "termin", "2025-03-14T09:30:00"), notRefreshed},
      {tasksTarget, with(task, "termin", nullptr), ""},
      {tasksTarget, without(task, "termin"), ""},
      {tasksTarget, with(task, "status", "nieznany"), ""},
      {tasksTarget, beside(task, "[1, {\"a\": null}]"), ""},
      {tasksTarget, beside(task, "tru"), notRefreshed},
      {tasksTarget, beside(task, "[1,]"), notRefreshed},
      {tasksTarget, beside(task, "{\"a\" 1}"), notRefreshed},
      {tasksTarget, beside(task, "01"), notRefreshed},
      {tasksTarget, beside(task, R"("\q")"), notRefreshed},
      {tasksTarget, beside(task, "\"\x01\""), notRefreshed},
      {meetingsTarget, without(meeting, "kiedy"), notRefreshed},
      {meetingsTarget, with(meeting, "kiedy", nullptr), notRefreshed},
      {meetingsTarget, with(meeting, "kiedy", 1741944600), notRefreshed},
      {meetingsTarget, with(meeting, "czas_trwania_min", "30"), notRefreshed},
      {meetingsTarget, without(meeting, "projekt_nazwa"), ""},
      {inboxTarget, "[]", notRefreshed},
      {inboxTarget, "{}", notRefreshed},
      {inboxTarget, R"({"zadania": [{}]})", notRefreshed},
      {inboxTarget, R"({"zadania": [], "inne": [1, 2}})", notRefreshed},
      {inboxTarget, R"({"zadania": [], "inne": {"zadania": 7}})", ""},
  };
  const std::map<std::string, std::string> emptyDay{
      {tasksTarget, "[]"}, {inboxTarget, R"({"zadania": []})"}, {meetingsTarget, "[]"}};
  for (const auto& [target, body, sentence] : cases) {
    for (const auto& [each, nothing] : emptyDay) service.answer(each, {.body = each == target ? body : nothing});
    EXPECT_EQ(loadSentence(), sentence) << target << " " << body;
  }
}

TEST_F(ExtensionFailureTest, FirstFailureInTheOrderTasksInboxMeetingsIsTold) {
  const auto late = std::make_shared<Event>();
  service.script(tasksTarget, {Await{late}, Send{HttpAnswer{.status = 501}.bytes()}});
  service.answer(inboxTarget, {.status = 502});
  service.answer(meetingsTarget, {.status = 503});
  const int loading = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  late->set();
  EXPECT_EQ(extension().answerTo(loading)["result"]["entries"][0]["blad"], serverError(501));
  service.answer(tasksTarget, {.body = "[]"});
  EXPECT_EQ(loadSentence(), serverError(502));
  service.answer(inboxTarget, {.body = R"({"zadania": []})"});
  EXPECT_EQ(loadSentence(), serverError(503));
}

TEST_F(ExtensionFailureTest, FailureOfTheTasksCancelsTheRequestsThatStillRun) {
  everyAnswer({Stall{}});
  const int stalled = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(3));
  const auto late = std::make_shared<Event>();
  service.script(tasksTarget, {Await{late}, Send{HttpAnswer{.status = 500}.bytes()}});
  const int failing = extension().ask("timeline", boardParams());
  ASSERT_TRUE(service.waitForRequests(6));
  late->set();
  // Requests that are not cancelled end at the deadline of their load, which is later than that of the stalled one.
  const json first = extension().answer();
  EXPECT_EQ(first["id"], failing) << "the load " << stalled << " began earlier and reached its deadline first";
  EXPECT_EQ(first["result"]["entries"][0]["blad"], serverError(500));
  EXPECT_TRUE(service.waitForHangUps(2));
}

TEST_F(ExtensionFailureTest, EachAddressThatLeadsNowhereHasItsSentence) {
  support::ScriptedHttpServer plain;  // speaks no TLS and says so
  plain.onAccept({Send{HttpAnswer{.status = 400}.bytes()}, Close{}});
  const std::vector<std::pair<std::string, std::string>> cases{
      {"http://127.0.0.1:1/api", noConnection},
      {"http://nie ma/api", serverError(0)},
      {"http://127.0.0.1:port/api", serverError(0)},
      {"%", serverError(0)},
      {"", noConnection},
      {"/api", noConnection},
      {"ftp://127.0.0.1/api", noConnection},
      {"file:///etc", noConnection},
      {"https://127.0.0.1:" + std::to_string(plain.port()) + "/api", noConnection},
      {service.url("/api/"), serverError(404)},
      {service.url("/api"), ""},
  };
  for (const auto& [address, sentence] : cases) {
    items.store("adres-api", address);
    EXPECT_EQ(loadSentence(), sentence) << address;
  }
  const auto requests = service.requests();
  EXPECT_TRUE(std::ranges::any_of(requests, [](const auto& each) { return each.target == "/api//moje/zadania"; }))
      << "no slash is taken away";
}

TEST_F(ExtensionFailureTest, TokenWithALineEndIsSentAsItIs) {
  items.store("token-urzadzenia", "tajne-7\n");
  EXPECT_EQ(loadSentence(), "");
  ASSERT_EQ(service.connectionCount(), 3);
  for (std::size_t connection = 0; connection < 3; ++connection) {
    EXPECT_THAT(service.received(connection), HasSubstr("Authorization: Bearer tajne-7\n"));
  }
  EXPECT_TRUE(items.holds("token-urzadzenia"));
}

TEST_F(ExtensionFailureTest, TokenWithALineEndInsideNeverBecomesAHeader) {
  for (const std::string token : {"tajne\nX-Obcy: 1", "tajne\r\nX-Obcy: 1\r\n", "tajne\rX-Obcy: 1", "\nX-Obcy: 1"}) {
    items.store("token-urzadzenia", token);
    EXPECT_EQ(loadSentence(), noConnection) << token;
  }
  items.store("token-urzadzenia", std::string("tajne\0X", 7));
  EXPECT_EQ(loadSentence(), noConnection);
  EXPECT_EQ(service.requests().size(), 0);
  EXPECT_THAT(extension().diagnostics(), Not(HasSubstr("tajne")));
}

TEST_F(ExtensionFailureTest, ItemThatOthersCanReadIsNoTokenAndIsToldOnceWithoutTheSecret) {
  namespace fs = std::filesystem;
  fs::permissions(items.fileOf("token-urzadzenia"),
                  fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  EXPECT_EQ(loadSentence(), signIn);
  EXPECT_EQ(loadSentence(), signIn);
  const std::string told = extension().diagnostics();
  const std::string path = items.fileOf("token-urzadzenia").native();
  const auto first = told.find(path);
  ASSERT_NE(first, std::string::npos) << told;
  EXPECT_EQ(told.find(path, first + 1), std::string::npos) << told;
  EXPECT_THAT(told, Not(HasSubstr("tajne-7")));
  EXPECT_TRUE(items.holds("token-urzadzenia"));
}

TEST_F(ExtensionFailureTest, FailureAfterASuccessShowsNoOldData) {
  service.answer(inboxTarget,
                 {.body = R"({"zadania": [{"id": "00000000-0000-4000-8000-000000000001", "tytul": "A"}]})"});
  EXPECT_EQ(loadEntry()["doDecyzji"], 1);
  service.answer(meetingsTarget, {.status = 500});
  const json entry = loadEntry();
  EXPECT_EQ(entry["doDecyzji"], 0);
  EXPECT_EQ(entry["blad"], serverError(500));
}

}  // namespace
}  // namespace end_to_end
