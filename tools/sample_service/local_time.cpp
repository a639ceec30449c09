#include "local_time.hpp"

#include <array>

namespace sample {
namespace {

std::string formatted(const std::tm& time, const char* pattern) {
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), pattern, &time)};
}

std::tm inDeviceZone(std::time_t instant) {
  ::tzset();  // localtime_r() alone would keep the zone of the program's start
  std::tm time{};
  ::localtime_r(&instant, &time);
  return time;
}

std::tm inUtc(std::time_t instant) {
  std::tm time{};
  ::gmtime_r(&instant, &time);
  return time;
}

}  // namespace

std::time_t atHour(std::time_t now, int days, int hour, int minute) {
  std::tm time = inDeviceZone(now);
  time.tm_mday += days;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = 0;
  time.tm_isdst = -1;
  return std::mktime(&time);
}

std::string written(std::time_t instant, DateForm form) {
  switch (form) {
    case DateForm::Day:
      return formatted(inDeviceZone(instant), "%Y-%m-%d");
    case DateForm::Utc:
      return formatted(inUtc(instant), "%Y-%m-%dT%H:%M:%SZ");
    case DateForm::UtcFraction:
      return formatted(inUtc(instant), "%Y-%m-%dT%H:%M:%S.250Z");
    case DateForm::Offset:
      break;
  }
  const std::tm time = inDeviceZone(instant);
  const std::string offset = formatted(time, "%z");  // +0100
  return formatted(time, "%Y-%m-%dT%H:%M:%S") + offset.substr(0, 3) + ":" + offset.substr(3);
}

}  // namespace sample
