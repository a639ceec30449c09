#include "widzety/timeline/wpis_json.hpp"

#include "base/json/json_object.hpp"
#include "base/json/json_text.hpp"
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

/// Appends the elements of an array, one JSON value at a time, so that a long list never exists as a tree.
template <typename Rekord>
void dopisz(std::string& out, const std::vector<Rekord>& rekordy, json (*jako)(const Rekord&)) {
  for (const Rekord& rekord : rekordy) {
    if (&rekord != &rekordy.front()) out += ',';
    out += base::toText(jako(rekord));
  }
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
  const auto elementy = obiekt.objects(nazwa);
  rekordy.reserve(elementy.size());
  for (const JsonObject& element : elementy) rekordy.push_back(rekordZ(element));
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
  EntryJson out = R"({"date":)" + base::toText(base::formatInstant(wpis.date)) + R"(,"zadania":[)";
  widzety::dopisz(out, wpis.zadania, widzety::zadanieJako);
  out += R"(],"spotkania":[)";
  widzety::dopisz(out, wpis.spotkania, widzety::spotkanieJako);
  out += R"(],"doDecyzji":)" + std::to_string(wpis.doDecyzji);
  if (wpis.blad) out += R"(,"blad":)" + base::toText(*wpis.blad);
  return out += '}';
}

std::expected<widzety::Wpis, std::string> platform::EntryForm<widzety::Wpis>::fromJson(const nlohmann::json& json) {
  return base::readObject(json, "entry", widzety::wpisZ);
}
