#include "widzety/timeline/wpis_json.hpp"

#include <cmath>
#include <limits>

#include "platform/calendar/instant.hpp"

namespace widzety {
namespace {

using nlohmann::json;

json zadanieJako(const ZadanieMoje& zadanie) {
  json out{{"id", zadanie.id.text()}, {"numer", zadanie.numer}, {"tytul", zadanie.tytul}};
  if (zadanie.termin) out["termin"] = platform::formatInstant(*zadanie.termin);
  out["status"] = zadanie.status;
  out["projektNazwa"] = zadanie.projektNazwa;
  return out;
}

json spotkanieJako(const SpotkaniePlanowane& spotkanie) {
  json out{{"id", spotkanie.id.text()},
           {"tytul", spotkanie.tytul},
           {"kiedy", platform::formatInstant(spotkanie.kiedy)},
           {"czasTrwaniaMin", spotkanie.czasTrwaniaMin}};
  if (spotkanie.projektNazwa) out["projektNazwa"] = *spotkanie.projektNazwa;
  return out;
}

/// A field that does not decode; thrown within this file only, turned into the result at its border.
struct BladPola {
  std::string opis;
};

/// One object of the form, with the path that leads to it.
class Obiekt {
 public:
  Obiekt(const json& wartosc, std::string sciezka) : wartosc_(wartosc), sciezka_(std::move(sciezka)) {
    if (!wartosc_.is_object()) throw BladPola{(sciezka_.empty() ? "entry" : sciezka_) + ": not an object"};
  }

  std::string tekst(const char* nazwa) const { return obecne(opcjonalnyTekst(nazwa), nazwa); }
  std::int64_t liczba(const char* nazwa) const {
    const json& wartosc = obecna(nazwa);
    if (wartosc.is_number_unsigned()) {
      constexpr auto najwieksza = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
      if (wartosc.get<std::uint64_t>() <= najwieksza) return wartosc.get<std::int64_t>();
    } else if (wartosc.is_number_integer()) {
      return wartosc.get<std::int64_t>();
    } else if (wartosc.is_number_float()) {
      // A whole number counts however it is written: 7.0, 7e0. From 2^63 on it no longer fits.
      const double liczba = wartosc.get<double>();
      if (std::trunc(liczba) == liczba && liczba >= -0x1p63 && liczba < 0x1p63)
        return static_cast<std::int64_t>(liczba);
    }
    odrzuc(nazwa, "not an integer of 64 bits");
  }
  absl::Time chwila(const char* nazwa) const { return obecne(opcjonalnaChwila(nazwa), nazwa); }
  base::Uuid identyfikator(const char* nazwa) const {
    const auto id = base::Uuid::parse(tekst(nazwa));
    if (!id) odrzuc(nazwa, "not a UUID");
    return *id;
  }

  std::optional<std::string> opcjonalnyTekst(const char* nazwa) const {
    const json* wartosc = znajdz(nazwa);
    if (wartosc == nullptr) return std::nullopt;
    if (!wartosc->is_string()) odrzuc(nazwa, "not a text");
    return wartosc->get<std::string>();
  }
  std::optional<absl::Time> opcjonalnaChwila(const char* nazwa) const {
    const auto napis = opcjonalnyTekst(nazwa);
    if (!napis) return std::nullopt;
    const auto chwila = platform::parseInstant(*napis);
    if (!chwila) odrzuc(nazwa, "not an instant");
    return chwila;
  }

  template <typename Rekord>
  std::vector<Rekord> lista(const char* nazwa, Rekord (*odczyt)(const Obiekt&)) const {
    const json& wartosci = obecna(nazwa);
    if (!wartosci.is_array()) odrzuc(nazwa, "not an array");
    std::vector<Rekord> rekordy;
    rekordy.reserve(wartosci.size());
    for (std::size_t i = 0; i < wartosci.size(); ++i) {
      rekordy.push_back(odczyt(Obiekt(wartosci[i], sciezkaDo(nazwa) + "[" + std::to_string(i) + "]")));
    }
    return rekordy;
  }

 private:
  std::string sciezkaDo(const char* nazwa) const { return sciezka_.empty() ? nazwa : sciezka_ + "." + nazwa; }
  [[noreturn]] void odrzuc(const char* nazwa, const char* wada) const {
    throw BladPola{sciezkaDo(nazwa) + ": " + wada};
  }

  const json* znajdz(const char* nazwa) const {
    const auto pole = wartosc_.find(nazwa);
    return pole == wartosc_.end() || pole->is_null() ? nullptr : &*pole;
  }
  const json& obecna(const char* nazwa) const {
    const json* wartosc = znajdz(nazwa);
    if (wartosc == nullptr) odrzuc(nazwa, "missing");
    return *wartosc;
  }
  template <typename Wartosc>
  Wartosc obecne(std::optional<Wartosc> wartosc, const char* nazwa) const {
    if (!wartosc) odrzuc(nazwa, "missing");
    return std::move(*wartosc);
  }

  const json& wartosc_;
  std::string sciezka_;
};

ZadanieMoje zadanieZ(const Obiekt& obiekt) {
  return {.id = obiekt.identyfikator("id"),
          .numer = obiekt.liczba("numer"),
          .tytul = obiekt.tekst("tytul"),
          .termin = obiekt.opcjonalnaChwila("termin"),
          .status = obiekt.tekst("status"),
          .projektNazwa = obiekt.tekst("projektNazwa")};
}

SpotkaniePlanowane spotkanieZ(const Obiekt& obiekt) {
  return {.id = obiekt.identyfikator("id"),
          .tytul = obiekt.tekst("tytul"),
          .kiedy = obiekt.chwila("kiedy"),
          .czasTrwaniaMin = obiekt.liczba("czasTrwaniaMin"),
          .projektNazwa = obiekt.opcjonalnyTekst("projektNazwa")};
}

}  // namespace
}  // namespace widzety

platform::EntryJson platform::EntryForm<widzety::Wpis>::toJson(const widzety::Wpis& wpis) {
  EntryJson out{{"date", formatInstant(wpis.date)}, {"zadania", EntryJson::array()}, {"spotkania", EntryJson::array()}};
  for (const auto& zadanie : wpis.zadania) out["zadania"].push_back(widzety::zadanieJako(zadanie));
  for (const auto& spotkanie : wpis.spotkania) out["spotkania"].push_back(widzety::spotkanieJako(spotkanie));
  out["doDecyzji"] = wpis.doDecyzji;
  if (wpis.blad) out["blad"] = *wpis.blad;
  return out;
}

std::expected<widzety::Wpis, std::string> platform::EntryForm<widzety::Wpis>::fromJson(const nlohmann::json& json) {
  try {
    const widzety::Obiekt wpis(json, "");
    return widzety::Wpis{.date = wpis.chwila("date"),
                         .zadania = wpis.lista("zadania", widzety::zadanieZ),
                         .spotkania = wpis.lista("spotkania", widzety::spotkanieZ),
                         .doDecyzji = wpis.liczba("doDecyzji"),
                         .blad = wpis.opcjonalnyTekst("blad")};
  } catch (const widzety::BladPola& blad) {
    return std::unexpected(blad.opis);
  }
}
