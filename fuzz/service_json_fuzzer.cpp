// Any bytes as the service's body: the decoder accepts them as JSON exactly when an independent slow grammar does, and
// the records hold what another JSON library reads.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "platform/json_decoding/slow_json_grammar.hpp"
#include "platform/json_decoding/test_types.hpp"
#include "require.hpp"
#include "widzety/model/dekodowanie.hpp"

namespace {

using fuzz::require;

/// The text under a key that must be there.
const std::string& text(const nlohmann::json& json, const char* key) {
  return json.at(key).get_ref<const std::string&>();
}

void compare(const widzety::ZadanieMoje& zadanie, const nlohmann::json& json) {
  require(zadanie.tytul == text(json, "tytul"));
  require(zadanie.status == text(json, "status"));
  require(zadanie.projektNazwa == text(json, "projekt_nazwa"));
  if (json.at("numer").is_number_integer()) require(zadanie.numer == json.at("numer"));
  require(zadanie.termin.has_value() == (json.contains("termin") && !json.at("termin").is_null()));
}

void compare(const widzety::SpotkaniePlanowane& spotkanie, const nlohmann::json& json) {
  require(spotkanie.tytul == text(json, "tytul"));
  if (json.at("czas_trwania_min").is_number_integer()) require(spotkanie.czasTrwaniaMin == json.at("czas_trwania_min"));
  const bool hasProject = json.contains("projekt_nazwa") && !json.at("projekt_nazwa").is_null();
  require(spotkanie.projektNazwa.has_value() == hasProject);
  if (hasProject) require(*spotkanie.projektNazwa == text(json, "projekt_nazwa"));
}

void compare(const widzety::PozycjaSkrzynki& pozycja, const nlohmann::json& json) {
  require(pozycja.tytul == text(json, "tytul"));
}

template <typename Record>
void compareAll(const std::vector<Record>& records, const nlohmann::json& json) {
  require(json.is_array() && json.size() == records.size());
  for (std::size_t i = 0; i < records.size(); ++i) compare(records[i], json[i]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const platform::JsonDecoder decoder = widzety::zrobDekoder();
  const std::string_view body(reinterpret_cast<const char*>(data), size);

  const bool isJson = decoder.decode<platform::Anything>(body).has_value();
  require(isJson == platform::isJsonBySlowGrammar(body, 512));

  const auto zadania = decoder.decode<std::vector<widzety::ZadanieMoje>>(body);
  const auto spotkania = decoder.decode<std::vector<widzety::SpotkaniePlanowane>>(body);
  const auto skrzynka = decoder.decode<widzety::Skrzynka>(body);
  require(isJson || (!zadania && !spotkania && !skrzynka));
  if (!isJson) return 0;

  const auto json = nlohmann::json::parse(body);
  if (zadania) compareAll(*zadania, json);
  if (spotkania) compareAll(*spotkania, json);
  if (skrzynka) compareAll(skrzynka->zadania, json.at("zadania"));
  return 0;
}
