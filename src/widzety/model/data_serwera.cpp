#include "widzety/model/data_serwera.hpp"

#include <optional>
#include <string>

#include "base/text/instant.hpp"
#include "platform/calendar/calendar.hpp"
#include "platform/calendar/device_time_zone.hpp"

namespace widzety {
namespace {

std::optional<absl::Time> samaData(std::string_view tekst, const absl::TimeZone& strefaDaty) {
  const auto dzien = base::parseDay(tekst);
  if (!dzien) return std::nullopt;
  const absl::Time poczatek = platform::Calendar(strefaDaty).startOfDay(*dzien);
  if (!base::hasWrittenForm(poczatek)) return std::nullopt;
  return poczatek;
}

}  // namespace

absl::TimeZone strefaDatySerwera() {
  absl::TimeZone strefa;
  return absl::LoadTimeZone("Europe/Warsaw", &strefa) ? strefa : platform::deviceTimeZone();
}

std::expected<absl::Time, platform::DecodingError> wczytajDate(std::string_view tekst, absl::TimeZone strefaDaty) {
  if (const auto chwila = samaData(tekst, strefaDaty)) return *chwila;
  if (const auto chwila = base::parseInstant(tekst)) return *chwila;
  return std::unexpected(platform::DecodingError{.kind = platform::DecodingError::Kind::dataCorrupted,
                                                 .codingPath = {},
                                                 .description = "Nie rozpoznaję daty: " + std::string(tekst)});
}

}  // namespace widzety
