#include "widzety/timeline/wpis_json.hpp"

#include "base/json/json_object.hpp"
#include "base/text/instant.hpp"

namespace widzety {
namespace {

using base::JsonObject;
using nlohmann::json;

json zadanieJako(const ZadanieMoje& zadanie) {
  json out{{"id", zadanie.id.text()}, {"numer", zadanie.numer}, {"tytul", zadanie.tytul}};
  if (zadanie.termin) out["termin"] = base::formatInstant(*zadanie.termin);
  out["status"] = zadanie.status;
  out["projektNazwa"] = zadanie.projektNazwa;
  return out;
}

json spotkanieJako(const SpotkaniePlanowane& spotkanie) {
  json out{{"id", spotkanie.id.text()},
           {"tytul", spotkanie.tytul},
           {"kiedy", base::formatInstant(spotkanie.kiedy)},
           {"czasTrwaniaMin", spotkanie.czasTrwaniaMin}};
  if (spotkanie.projektNazwa) out["projektNazwa"] = *spotkanie.projektNazwa;
  return out;
}

absl::Time chwilaZ(const JsonObject& obiekt, const char* nazwa) {
  return obiekt.parsed(nazwa, base::parseInstant, "not an instant");
}

base::Uuid identyfikatorZ(const JsonObject& obiekt) { return obiekt.parsed("id", base::Uuid::parse, "not a UUID"); }

ZadanieMoje zadanieZ(const JsonObject& obiekt) {
  return {.id = identyfikatorZ(obiekt),
          .numer = obiekt.integer("numer"),
          .tytul = obiekt.text("tytul"),
          .termin = obiekt.optionalParsed("termin", base::parseInstant, "not an instant"),
          .status = obiekt.text("status"),
          .projektNazwa = obiekt.text("projektNazwa")};
}

SpotkaniePlanowane spotkanieZ(const JsonObject& obiekt) {
  return {.id = identyfikatorZ(obiekt),
          .tytul = obiekt.text("tytul"),
          .kiedy = chwilaZ(obiekt, "kiedy"),
          .czasTrwaniaMin = obiekt.integer("czasTrwaniaMin"),
          .projektNazwa = obiekt.optionalText("projektNazwa")};
}

template <typename Rekord>
std::vector<Rekord> listaZ(const JsonObject& obiekt, const char* nazwa, Rekord (*rekordZ)(const JsonObject&)) {
  std::vector<Rekord> rekordy;
  for (const JsonObject& element : obiekt.objects(nazwa)) rekordy.push_back(rekordZ(element));
  return rekordy;
}

Wpis wpisZ(const JsonObject& obiekt) {
  return {.date = chwilaZ(obiekt, "date"),
          .zadania = listaZ(obiekt, "zadania", zadanieZ),
          .spotkania = listaZ(obiekt, "spotkania", spotkanieZ),
          .doDecyzji = obiekt.integer("doDecyzji"),
          .blad = obiekt.optionalText("blad")};
}

}  // namespace
}  // namespace widzety

platform::EntryJson platform::EntryForm<widzety::Wpis>::toJson(const widzety::Wpis& wpis) {
  EntryJson out{
      {"date", base::formatInstant(wpis.date)}, {"zadania", EntryJson::array()}, {"spotkania", EntryJson::array()}};
  for (const auto& zadanie : wpis.zadania) out["zadania"].push_back(widzety::zadanieJako(zadanie));
  for (const auto& spotkanie : wpis.spotkania) out["spotkania"].push_back(widzety::spotkanieJako(spotkanie));
  out["doDecyzji"] = wpis.doDecyzji;
  if (wpis.blad) out["blad"] = *wpis.blad;
  return out;
}

std::expected<widzety::Wpis, std::string> platform::EntryForm<widzety::Wpis>::fromJson(const nlohmann::json& json) {
  return base::readObject(json, "entry", widzety::wpisZ);
}
