#include "sample_service/sample_day.hpp"

#include <cstdlib>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "sample_service/local_time.hpp"

namespace sample {
namespace {

using nlohmann::json;

constexpr std::time_t kHour = 3600;
constexpr std::time_t kDay = 24 * kHour;

// Seconds since 1970 of either form of date-time.
std::time_t instant(const std::string& text) {
  std::tm time{};
  const char* rest = ::strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S", &time);
  EXPECT_NE(rest, nullptr) << text;
  std::time_t seconds = ::timegm(&time);
  if (rest != nullptr && (*rest == '+' || *rest == '-')) {
    const int minutes = std::stoi(std::string(rest + 1, 2)) * 60 + std::stoi(std::string(rest + 4, 2));
    seconds += (*rest == '+' ? -60 : 60) * minutes;
  }
  return seconds;
}

class SampleDay : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    ::setenv("TZ", GetParam(), 1);
    ::tzset();
  }
};

INSTANTIATE_TEST_SUITE_P(Zones, SampleDay,
                         testing::Values("UTC", "Europe/Warsaw", "Pacific/Kiritimati", "America/Los_Angeles",
                                         "CET-1CEST,M3.5.0,M10.5.0/3"),
                         [](const auto& param) { return "Zone" + std::to_string(param.index); });

// Two years in odd steps meet every hour of the day, month ends and both clock changes.
template <typename Check>
void atManyInstants(Check check) {
  for (std::time_t now = 1'740'000'000; now < 1'740'000'000 + 730 * kDay; now += 7 * kHour + 1117) {
    check(now);
    if (testing::Test::HasFailure()) {
      FAIL() << "at " << now;
    }
  }
}

TEST_P(SampleDay, FullDayAlwaysHasThreeMeetingsFromNowToTheEndOfTomorrow) {
  atManyInstants([](std::time_t now) {
    const std::time_t end = atHour(now, 2, 0, 0);
    int shown = 0;
    std::set<std::string> identifiers;
    const json meetings = json::parse(answersFor(Day::Full, now).spotkania);
    for (const json& meeting : meetings) {
      const std::time_t start = instant(meeting.at("kiedy"));
      shown += start >= now && start < end ? 1 : 0;
      identifiers.insert(meeting.at("id").get<std::string>());
    }
    ASSERT_EQ(shown, 3);
    ASSERT_EQ(meetings.size(), 5u);  // and one under way, one the day after tomorrow
    ASSERT_EQ(identifiers.size(), meetings.size());
  });
}

TEST_P(SampleDay, FullDayAlwaysHasThreeOpenTasksDueToday) {
  atManyInstants([](std::time_t now) {
    const std::string today = written(now, DateForm::Day);
    int dueToday = 0;
    for (const json& task : json::parse(answersFor(Day::Full, now).zadania)) {
      const bool open = task.at("status") == "otwarte" || task.at("status") == "w_toku";
      const bool timed = task.at("termin").is_string() && task.at("termin").get<std::string>().size() > 10;
      dueToday += open && timed && written(instant(task.at("termin")), DateForm::Day) == today ? 1 : 0;
    }
    ASSERT_EQ(dueToday, 3);
  });
}

TEST_P(SampleDay, MeetingsOfTodayStartInOfficeHoursAndLeaveTimeToLook) {
  const std::time_t evening = atHour(1'750'000'000, 0, 17, 45);
  const std::time_t noon = atHour(1'750'000'000, 0, 11, 50);
  const auto first = [](std::time_t now) {
    return instant(json::parse(answersFor(Day::Full, now).spotkania).at(1).at("kiedy"));
  };
  EXPECT_EQ(first(noon), atHour(noon, 0, 13, 30));  // 12:00 is too near
  EXPECT_EQ(first(evening), atHour(evening, 1, 9, 0));
}

TEST(SampleDayTexts, BusyDayOverfillsAnyBoardAndEmptyDayHoldsNothing) {
  const Answers busy = answersFor(Day::Busy, 1'750'000'000);
  EXPECT_GT(json::parse(busy.zadania).size(), 8u);
  EXPECT_GT(json::parse(busy.spotkania).size(), 6u);
  EXPECT_EQ(json::parse(busy.skrzynka).at("zadania").size(), 12u);
  const Answers empty = answersFor(Day::Empty, 1'750'000'000);
  EXPECT_EQ(json::parse(empty.zadania), json::array());
  EXPECT_EQ(json::parse(empty.spotkania), json::array());
  EXPECT_EQ(json::parse(empty.skrzynka).at("zadania"), json::array());
}

// The titles and project names of a day; those of the three resources in turn.
std::set<std::string> textsOf(const Answers& answers) {
  std::set<std::string> texts;
  const json inbox = json::parse(answers.skrzynka);
  for (const json& items : {json::parse(answers.zadania), json::parse(answers.spotkania), inbox.at("zadania")}) {
    for (const json& item : items) {
      texts.insert(item.at("tytul").get<std::string>());
      texts.insert(item.value("projekt_nazwa", ""));
    }
  }
  return texts;
}

TEST(SampleDayTexts, EachDaySpeaksEachLanguage) {
  // Names, a title in Japanese, one in letters with marks, and words that two languages share.
  const std::set<std::string> shared{"", "東京", "東京の研究室との打ち合わせを準備する",
                                     "Zaz\u0307o\u0301łcic\u0301 ge\u0328s\u0301la\u0328 jaz\u0301n\u0301",
                                     "Biblioteka"};
  for (const Day day : {Day::Full, Day::Busy}) {
    const auto polish = textsOf(answersFor(day, 1'750'000'000));
    for (const Language language : {Language::English, Language::Lithuanian}) {
      const auto texts = textsOf(answersFor(day, 1'750'000'000, language));
      EXPECT_EQ(texts.size(), polish.size());
      for (const std::string& text : texts) EXPECT_TRUE(!polish.contains(text) || shared.contains(text)) << text;
    }
  }
}

TEST(LocalTime, WritesEachDateForm) {
  ::setenv("TZ", "Europe/Warsaw", 1);
  ::tzset();
  constexpr std::time_t kInstant = 1'741'944'600;  // 2025-03-14T09:30:00Z
  EXPECT_EQ(written(kInstant, DateForm::Day), "2025-03-14");
  EXPECT_EQ(written(kInstant, DateForm::Utc), "2025-03-14T09:30:00Z");
  EXPECT_EQ(written(kInstant, DateForm::UtcFraction), "2025-03-14T09:30:00.250Z");
  EXPECT_EQ(written(kInstant, DateForm::Offset), "2025-03-14T10:30:00+01:00");
}

}  // namespace
}  // namespace sample
