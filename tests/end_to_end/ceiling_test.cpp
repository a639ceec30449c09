// How much memory the extension takes at most, whatever the service answers.
#include <fstream>
#include <string>

#include "end_to_end/extension_fixture.hpp"

namespace end_to_end {
namespace {

constexpr std::size_t longestBody = std::size_t{16} << 20;
constexpr long ceiling = 200 * 1024;  // kilobytes

class ExtensionCeilingTest : public ServiceTest {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "a sanitizer takes memory of its own";
  }

  void answerAll(const std::string& body) {
    for (const auto& target : {tasksTarget, inboxTarget, meetingsTarget}) service.answer(target, {.body = body});
  }

  /// In kilobytes, since the process was started.
  long peak() {
    std::ifstream status("/proc/" + std::to_string(extension().id()) + "/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("VmHWM:")) return std::stol(line.substr(6));
    }
    return -1;
  }
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
  EXPECT_EQ(loadEntry()["zadania"].size(), 1U);
  EXPECT_LT(peak(), ceiling);
}

TEST_F(ExtensionCeilingTest, HoldsForBodiesThatAreTooLong) {
  answerAll(std::string(std::size_t{60} << 20, ' '));
  EXPECT_EQ(loadSentence(), noConnection);
  EXPECT_LT(peak(), ceiling);
}

}  // namespace
}  // namespace end_to_end
