#include "widzety/model/data_serwera.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/calendar/calendar.hpp"
#include "platform/calendar/device_time_zone.hpp"

namespace widzety {
namespace {

bool jestCyfra(char znak) { return znak >= '0' && znak <= '9'; }

/// Takes exactly `ile` digits off the front of `reszta`.
std::optional<int> wezLiczbe(std::string_view& reszta, std::size_t ile) {
  if (reszta.size() < ile) return std::nullopt;
  int liczba = 0;
  for (const char znak : reszta.substr(0, ile)) {
    if (!jestCyfra(znak)) return std::nullopt;
    liczba = liczba * 10 + (znak - '0');
  }
  reszta.remove_prefix(ile);
  return liczba;
}

bool wezZnak(std::string_view& reszta, char znak) {
  if (!reszta.starts_with(znak)) return false;
  reszta.remove_prefix(1);
  return true;
}

std::optional<absl::CivilDay> wezDzien(std::string_view& reszta) {
  const auto rok = wezLiczbe(reszta, 4);
  if (!rok || !wezZnak(reszta, '-')) return std::nullopt;
  const auto miesiac = wezLiczbe(reszta, 2);
  if (!miesiac || !wezZnak(reszta, '-')) return std::nullopt;
  const auto dzien = wezLiczbe(reszta, 2);
  if (!dzien) return std::nullopt;
  // A civil day out of range moves on into the next month: what comes back changed was no real day.
  const absl::CivilDay data(*rok, *miesiac, *dzien);
  if (data.month() != *miesiac || data.day() != *dzien) return std::nullopt;
  return data;
}

/// "HH:mm", for the time of day and for an offset alike.
std::optional<absl::Duration> wezGodzineIMinute(std::string_view& reszta) {
  const auto godzina = wezLiczbe(reszta, 2);
  if (!godzina || *godzina > 23 || !wezZnak(reszta, ':')) return std::nullopt;
  const auto minuta = wezLiczbe(reszta, 2);
  if (!minuta || *minuta > 59) return std::nullopt;
  return absl::Hours(*godzina) + absl::Minutes(*minuta);
}

/// "." and at least one digit.
std::optional<absl::Duration> wezUlamek(std::string_view& reszta) {
  if (!wezZnak(reszta, '.') || reszta.empty() || !jestCyfra(reszta.front())) return std::nullopt;
  constexpr std::int64_t cwiartekSekundy = 4'000'000'000;
  // Eleven digits tell a quarter of a nanosecond exactly; those behind them could only be cut.
  constexpr int znaczacychCyfr = 11;
  constexpr std::int64_t jednosciSekundy = 100'000'000'000;
  std::int64_t jednosci = 0;
  std::int64_t waga = jednosciSekundy / 10;
  for (int i = 0; !reszta.empty() && jestCyfra(reszta.front()); ++i, reszta.remove_prefix(1)) {
    if (i >= znaczacychCyfr) continue;
    jednosci += (reszta.front() - '0') * waga;
    waga /= 10;
  }
  const std::int64_t cwiartki = jednosci / (jednosciSekundy / cwiartekSekundy);
  return cwiartki * (absl::Nanoseconds(1) / 4);
}

std::optional<absl::Duration> wezPrzesuniecie(std::string_view& reszta) {
  if (wezZnak(reszta, 'Z')) return absl::ZeroDuration();
  const bool naZachod = reszta.starts_with('-');
  if (!naZachod && !reszta.starts_with('+')) return std::nullopt;
  reszta.remove_prefix(1);
  const auto przesuniecie = wezGodzineIMinute(reszta);
  if (!przesuniecie) return std::nullopt;
  return naZachod ? -*przesuniecie : *przesuniecie;
}

std::optional<absl::Time> samaData(std::string_view tekst, const absl::TimeZone& strefaDaty) {
  const auto dzien = wezDzien(tekst);
  if (!dzien || !tekst.empty()) return std::nullopt;
  return platform::Calendar(strefaDaty).startOfDay(*dzien);
}

enum class Ulamek { jest, brak };

std::optional<absl::Time> dataIGodzina(std::string_view tekst, Ulamek ulamek) {
  const auto dzien = wezDzien(tekst);
  if (!dzien || !wezZnak(tekst, 'T')) return std::nullopt;
  const auto godzina = wezGodzineIMinute(tekst);
  if (!godzina || !wezZnak(tekst, ':')) return std::nullopt;
  const auto sekunda = wezLiczbe(tekst, 2);
  if (!sekunda || *sekunda > 59) return std::nullopt;
  const auto czescSekundy = ulamek == Ulamek::jest ? wezUlamek(tekst) : absl::ZeroDuration();
  if (!czescSekundy) return std::nullopt;
  const auto przesuniecie = wezPrzesuniecie(tekst);
  if (!przesuniecie || !tekst.empty()) return std::nullopt;
  return absl::FromCivil(*dzien, absl::UTCTimeZone()) + *godzina + absl::Seconds(*sekunda) + *czescSekundy -
         *przesuniecie;
}

}  // namespace

absl::TimeZone strefaDatySerwera() {
  absl::TimeZone strefa;
  return absl::LoadTimeZone("Europe/Warsaw", &strefa) ? strefa : platform::deviceTimeZone();
}

std::expected<absl::Time, platform::DecodingError> wczytajDate(std::string_view tekst, absl::TimeZone strefaDaty) {
  if (const auto chwila = samaData(tekst, strefaDaty)) return *chwila;
  if (const auto chwila = dataIGodzina(tekst, Ulamek::jest)) return *chwila;
  if (const auto chwila = dataIGodzina(tekst, Ulamek::brak)) return *chwila;
  return std::unexpected(platform::DecodingError{.kind = platform::DecodingError::Kind::dataCorrupted,
                                                 .codingPath = {},
                                                 .description = "Nie rozpoznaję daty: " + std::string(tekst)});
}

std::expected<absl::Time, platform::DecodingError> wczytajDate(std::string_view tekst) {
  return wczytajDate(tekst, strefaDatySerwera());
}

}  // namespace widzety
