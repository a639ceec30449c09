// The rows of the sample days: titles, projects and places in time, without any date of their own.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "local_time.hpp"

namespace sample {

struct Deadline {
  int days = 0;  // from today; 0 is today
  int hour = 0;  // unused by DateForm::Day
  int minute = 0;
  DateForm form = DateForm::Day;
};

struct TaskRow {
  int numer;
  std::string_view tytul;
  std::optional<Deadline> termin;
  std::string_view status;
  std::string_view projekt;
};

struct MeetingRow {
  std::string_view tytul;
  int minutes;
  std::string_view projekt;  // empty: a meeting of no project
};

// Meetings still to come are laid into the free office hours from now on, at most `today` of them today.
struct DayRows {
  std::span<const TaskRow> tasks;
  std::span<const MeetingRow> meetings;
  int today = 0;
  std::span<const std::string_view> inbox;
};

DayRows fullDay();
DayRows busyDay();

}  // namespace sample
