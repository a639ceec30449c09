// How much memory the extension takes at most, whatever the service answers and a host asks.
#include <fstream>
#include <string>

#include <absl/time/clock.h>

#include "base/text/instant.hpp"
#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

constexpr std::size_t longestBody = std::size_t{16} << 20;
constexpr std::size_t longestRequest = std::size_t{64} << 20;
constexpr long ceiling = 200 * 1024;  // kilobytes
constexpr auto unhurried = std::chrono::minutes(2);

class ExtensionCeilingTest : public ServiceTest {
 protected:
  void SetUp() override {
    if (support::sanitized) GTEST_SKIP() << "a sanitizer takes memory of its own";
  }

  void answerAll(const std::string& body) {
    for (const auto& target : {tasksTarget, inboxTarget, meetingsTarget}) service.answer(target, {.body = body});
  }

  /// A number of /proc/PID/status, in kilobytes.
  long statusOf(const std::string& name) {
    std::ifstream status("/proc/" + std::to_string(extension().id()) + "/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with(name)) return std::stol(line.substr(name.size()));
    }
    return -1;
  }
  /// Since the process was started.
  long peak() { return statusOf("VmHWM:"); }
};

TEST_F(ExtensionCeilingTest, HoldsForBodiesOfTheLargestSizeFullOfValues) {
  std::string zeros = "[";
  while (zeros.size() < longestBody - 3) zeros += "0,";
  answerAll(zeros + "0]");
  EXPECT_EQ(loadSentence(), notRefreshed);
  EXPECT_GT(peak(), 0);
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForBodiesThatNestWithoutEnd) {
  answerAll(std::string(longestBody, '['));
  EXPECT_EQ(loadSentence(), notRefreshed);
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForOneTitleOfTheLargestSize) {
  json day = json::array({serverTask(1, "", "2020-01-01", "otwarte")});
  day[0]["tytul"] = std::string(longestBody - day.dump().size(), 'x');
  service.answer(tasksTarget, {.body = day.dump()});
  json answer = extension().answerTo(extension().ask("timeline", boardParams()), unhurried);
  EXPECT_EQ(answer["result"]["entries"][0]["zadania"].size(), 1U);
  EXPECT_LT(peak(), ceiling);
}

std::string request(const std::string& id, const std::string& method, const std::string& params) {
  return R"({"jsonrpc":"2.0","id":)" + id + R"(,"method":")" + method + R"(","params":)" + params + "}";
}

/// A body of records, each with another id, as long as the largest one that is read. `beginning` and `end` stand around
/// the records; `rest` follows the id.
std::string fullBody(const std::string& beginning, const std::string& rest, const std::string& end) {
  std::string body = beginning;
  for (int number = 1;; ++number) {
    std::string digits = std::to_string(number);
    digits.insert(0, 12 - digits.size(), '0');
    const std::string record = R"({"id":"00000000-0000-4000-8000-)" + digits + '"' + rest + "},";
    if (body.size() + record.size() + end.size() > longestBody) break;
    body += record;
  }
  body.back() = ' ';  // the last comma
  return body + end;
}

TEST_F(ExtensionCeilingTest, HoldsForBodiesOfTheLargestSizeFullOfShortRecords) {
  // Some 130,000 overdue tasks and 150,000 meetings, all of which belong into the entry.
  const absl::Time soon = absl::Now() + absl::Hours(1);
  service.answer(
      tasksTarget,
      {.body = fullBody("[", R"(,"numer":1,"tytul":"t","termin":"2020-01-01","status":"o","projekt_nazwa":"P")", "]")});
  service.answer(inboxTarget, {.body = fullBody(R"({"zadania":[)", R"(,"tytul":"t")", "]}")});
  service.answer(
      meetingsTarget,
      {.body = fullBody("[", R"(,"tytul":"t","czas_trwania_min":1,"kiedy":")" + base::formatInstant(soon) + '"', "]")});
  extension().ask("timeline", boardParams());
  EXPECT_GT(extension().line(unhurried).value_or("").size(), 2 * longestBody);
  EXPECT_LT(peak(), ceiling);
  EXPECT_TRUE(support::eventually([&] { return statusOf("VmRSS:") < ceiling / 3; })) << "what it took is given back";
}

TEST_F(ExtensionCeilingTest, HoldsForTheLargestEntryThatAHostHandsIn) {
  const std::string text(16, 'x');
  const std::string entry = fullBody(
      R"({"date":"2025-03-14T08:00:00Z","doDecyzji":0,"spotkania":[],"zadania":[)",
      R"(,"numer":1,"tytul":")" + text + R"(","status":")" + text + R"(","projektNazwa":")" + text + '"', "]}");
  std::string params = boardParams().dump();
  params.back() = ',';
  ASSERT_TRUE(extension().writeLine(request("1", "render", params + R"("entry":)" + entry + '}')));
  EXPECT_TRUE(extension().answer(unhurried).contains("result"));
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForARequestOfTooManyValues) {
  std::string values = "0";
  while (values.size() < longestBody) values += ",0";
  ASSERT_TRUE(extension().writeLine(request("1", "render", '[' + values + ']')));
  EXPECT_EQ(extension().answer(unhurried)["error"]["message"], "too many values");
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForRequestsOfTheLargestSize) {
  const std::string text(longestRequest - 1000, 'x');
  const std::string spaces(text.size(), ' ');
  const std::string third = text.substr(0, text.size() / 3);
  std::string beginning = boardParams().dump();
  beginning.back() = ',';
  beginning += R"("entry":{"date":"2025-03-14T08:00:00Z","doDecyzji":0,"spotkania":[],"zadania":[)";
  const auto task = [](const std::string& title) {
    return R"({"id":"00000000-0000-4000-8000-000000000000","numer":1,"tytul":")" + title +
           R"(","status":"otwarte","projektNazwa":"P"})";
  };
  const std::string answered[] = {
      request("1", "render", beginning + task(text) + "]}}"),
      request("1", "render", beginning + task(third) + ',' + task(third) + ',' + task(third) + "]}}"),
      request("1", "widgets", R"({"padding":")" + text + "\"}"),
      request("1", "widgets", "[1, " + spaces + "2]"),
      request("1", "widgets", "{}") + spaces,
  };
  for (const std::string& line : answered) {
    ASSERT_TRUE(extension().writeLine(line));
    EXPECT_TRUE(extension().answer(unhurried).contains("result")) << line.substr(0, 80);
    EXPECT_LT(peak(), ceiling) << line.substr(0, 80);
  }

  std::string keys = "{";
  for (int number = 0; keys.size() < text.size(); ++number) keys += '"' + std::to_string(number) + R"(":0,)";
  keys.back() = '}';
  const struct {
    std::string line;
    int code;
  } refused[] = {
      {request("1", text, "{}"), -32601},
      {request("1", "widgets", keys), -32600},
      {request("1", "widgets", "[1" + std::string(text.size(), '0') + ']'), -32600},
      {request("1", "widgets", "{}") + spaces + 'x', -32700},
      {'"' + text, -32700},
  };
  for (const auto& [line, code] : refused) {
    ASSERT_TRUE(extension().writeLine(line));
    EXPECT_EQ(extension().answer(unhurried)["error"]["code"], code) << line.substr(0, 80);
    EXPECT_LT(peak(), ceiling) << line.substr(0, 80);
  }
}

TEST_F(ExtensionCeilingTest, HoldsForBodiesThatAreTooLong) {
  answerAll(std::string(std::size_t{60} << 20, ' '));
  EXPECT_EQ(loadSentence(), noConnection);
  EXPECT_LT(peak(), ceiling);
}

}  // namespace
}  // namespace end_to_end
