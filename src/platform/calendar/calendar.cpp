#include "platform/calendar/calendar.hpp"

namespace platform {
namespace {

bool isFinite(absl::Time instant) { return instant != absl::InfiniteFuture() && instant != absl::InfinitePast(); }

}  // namespace

absl::Time Calendar::startOfDay(absl::CivilDay day) const {
  const auto midnight = zone_.At(absl::CivilSecond(day));
  // `pre` is the only reading of a midnight that comes once, and the first of one that comes twice.
  return midnight.kind == absl::TimeZone::TimeInfo::SKIPPED ? midnight.trans : midnight.pre;
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
