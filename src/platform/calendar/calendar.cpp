#include "platform/calendar/calendar.hpp"

namespace platform {
namespace {

bool isFinite(absl::Time instant) { return instant != absl::InfiniteFuture() && instant != absl::InfinitePast(); }

}  // namespace

absl::Time Calendar::startOfDay(absl::CivilDay day) const {
  const absl::CivilSecond midnight(day);
  const auto readings = zone_.At(midnight);
  if (readings.kind == absl::TimeZone::TimeInfo::SKIPPED) return readings.trans;
  // `pre` is the only reading of a midnight that comes once, and the first of one that comes twice. A zone that the C
  // library reads (`TZ=EST5`) reports every midnight in standard time as coming twice, the first an hour too early, so
  // `pre` counts only if the clock shows midnight then.
  return zone_.At(readings.pre).cs == midnight ? readings.pre : readings.post;
}

std::optional<absl::Time> Calendar::startOfDayAfter(absl::Time instant, int days) const {
  if (!isFinite(instant)) return std::nullopt;
  const absl::Time start = startOfDay(day(instant) + days);
  return isFinite(start) ? std::optional(start) : std::nullopt;
}

std::optional<absl::Time> Calendar::addingMinutes(absl::Time instant, int minutes) const {
  const absl::Time later = instant + absl::Minutes(minutes);
  return isFinite(later) ? std::optional(later) : std::nullopt;
}

}  // namespace platform
