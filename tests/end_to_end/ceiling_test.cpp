// How much memory the extension takes at most, whatever the service answers.
#include <fstream>
#include <string>

#include <absl/time/clock.h>

#include "base/text/instant.hpp"
#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

constexpr std::size_t longestBody = std::size_t{16} << 20;
constexpr long ceiling = 200 * 1024;  // kilobytes
constexpr auto unhurried = std::chrono::minutes(2);

class ExtensionCeilingTest : public ServiceTest {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "a sanitizer takes memory of its own";
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
  ASSERT_TRUE(extension().writeLine(R"({"jsonrpc":"2.0","id":1,"method":"render","params":)" + params + R"("entry":)" +
                                    entry + "}}"));
  EXPECT_TRUE(extension().answer(unhurried).contains("result"));
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForARequestOfTooManyValues) {
  std::string values = "0";
  while (values.size() < std::size_t{60} << 20) values += ",0";
  ASSERT_TRUE(extension().writeLine(R"({"jsonrpc":"2.0","id":1,"method":"render","params":[)" + values + "]}"));
  EXPECT_EQ(extension().answer(unhurried)["error"]["message"], "too many values");
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForBodiesThatAreTooLong) {
  answerAll(std::string(std::size_t{60} << 20, ' '));
  EXPECT_EQ(loadSentence(), noConnection);
  EXPECT_LT(peak(), ceiling);
}

}  // namespace
}  // namespace end_to_end
