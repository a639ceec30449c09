#include "sample_day.hpp"

#include <cstdio>
#include <vector>

#include <nlohmann/json.hpp>

#include "sample_tables.hpp"

namespace sample {
namespace {

using nlohmann::json;

struct Hour {
  int hour;
  int minute;
};

// When a meeting may start; the seven of a day hold the busy day's six tomorrow, should none fit today.
constexpr Hour kOfficeHours[] = {{9, 0}, {10, 30}, {12, 0}, {13, 30}, {15, 0}, {16, 30}, {18, 0}};
constexpr std::time_t kMinute = 60;
constexpr std::time_t kNotice = 20 * kMinute;  // a reader who dawdles still finds the meeting ahead
constexpr int kTomorrow = 1;

// The same item has the same identifier in every answer. Those of odd groups are in capitals: readers take both.
std::string identifier(unsigned group, std::size_t index) {
  char text[48];
  const char* form = group % 2 != 0 ? "5A17E%03X-DA7A-4C0D-8E1F-%012zX" : "5a17e%03x-da7a-4c0d-8e1f-%012zx";
  std::snprintf(text, sizeof text, form, group, index + 1);
  return text;
}

json task(const TaskRow& row, std::size_t index, std::time_t now, Language language) {
  json result = {
      {"id", identifier(1, index)},
      {"numer", row.numer},
      {"tytul", translated(row.tytul, language)},
      {"status", row.status},
      {"projekt_nazwa", translated(row.projekt, language)},
      {"priorytet", index % 3},
      {"etykiety", json::array({"praca", "biuro"})},
      {"przypisany", {{"nazwa", "Ja"}, {"awatar", nullptr}}},
  };
  if (row.termin) {
    const std::time_t due = atHour(now, row.termin->days, row.termin->hour, row.termin->minute);
    result["termin"] = written(due, row.termin->form);
  } else {
    result["termin"] = nullptr;
  }
  return result;
}

json meeting(const MeetingRow& row, std::size_t index, std::time_t start, Language language) {
  constexpr DateForm kForms[] = {DateForm::Offset, DateForm::Utc, DateForm::UtcFraction};
  json result = {
      {"id", identifier(2, index)},
      {"tytul", translated(row.tytul, language)},
      {"kiedy", written(start, kForms[index % std::size(kForms)])},
      {"czas_trwania_min", row.minutes},
      {"miejsce", "sala 12"},
      {"uczestnicy", json::array({"Ja", "Inga"})},
  };
  if (!row.projekt.empty()) {
    result["projekt_nazwa"] = translated(row.projekt, language);
  }
  return result;
}

std::vector<std::time_t> freeHours(std::time_t now, std::size_t count, int today) {
  std::vector<std::time_t> starts;
  for (const Hour& hour : kOfficeHours) {
    const std::time_t start = atHour(now, 0, hour.hour, hour.minute);
    if (start >= now + kNotice && starts.size() < static_cast<std::size_t>(today)) {
      starts.push_back(start);
    }
  }
  for (const Hour& hour : kOfficeHours) {
    if (starts.size() < count) {
      starts.push_back(atHour(now, kTomorrow, hour.hour, hour.minute));
    }
  }
  return starts;
}

json tasks(const DayRows& rows, std::time_t now, Language language) {
  json result = json::array();
  for (std::size_t i = 0; i < rows.tasks.size(); ++i) {
    result.push_back(task(rows.tasks[i], i, now, language));
  }
  return result;
}

json meetings(const DayRows& rows, std::time_t now, Language language) {
  json result = json::array();
  result.push_back(meeting({"Seminarium zespołu", 90, "Pracownia"}, 100, atHour(now, 2, 10, 0), language));
  const std::vector<std::time_t> starts = freeHours(now, rows.meetings.size(), rows.today);
  for (std::size_t i = 0; i < rows.meetings.size(); ++i) {
    result.push_back(meeting(rows.meetings[i], i, starts[i], language));
  }
  result.push_back(meeting({"Przegląd poczty", 30, ""}, 101, now - 10 * kMinute, language));
  return result;
}

json inbox(std::span<const std::string_view> titles, std::time_t now, Language language) {
  json items = json::array();
  for (std::size_t i = 0; i < titles.size(); ++i) {
    items.push_back({{"id", identifier(4, i)}, {"tytul", translated(titles[i], language)}, {"zrodlo", "transkrypt"}});
  }
  return {{"zadania", items}, {"razem", titles.size()}, {"sprawdzono", written(now, DateForm::Utc)}};
}

}  // namespace

Answers answersFor(Day day, std::time_t now, Language language) {
  if (day == Day::Empty) {
    return {"[]", inbox({}, now, language).dump(), "[]"};
  }
  const DayRows rows = day == Day::Busy ? busyDay() : fullDay();
  return {tasks(rows, now, language).dump(), inbox(rows.inbox, now, language).dump(),
          meetings(rows, now, language).dump()};
}

}  // namespace sample
