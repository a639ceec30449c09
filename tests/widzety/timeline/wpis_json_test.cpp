#include "widzety/timeline/wpis_json.hpp"

#include <gtest/gtest.h>

#include "base/text/instant.hpp"

namespace widzety {
namespace {

using nlohmann::json;
using Form = platform::EntryForm<Wpis>;

absl::Time chwila(const char* text) { return *base::parseInstant(text); }

Wpis pelny() {
  return {.date = chwila("2025-03-14T09:30:00.25Z"),
          .zadania = {{*base::Uuid::parse("00112233-4455-6677-8899-AABBCCDDEEFF"), 9223372036854775807,
                       "Wysłać „wniosek”", chwila("2025-03-13T23:00:00Z"), "otwarte", "Pracownia"},
                      {*base::Uuid::parse("10112233-4455-6677-8899-aabbccddeeff"), -1, "", std::nullopt, "", ""}},
          .spotkania = {{*base::Uuid::parse("20112233-4455-6677-8899-aabbccddeeff"), "Narada",
                         chwila("2025-03-14T11:00:00Z"), 60, "Pracownia"},
                        {*base::Uuid::parse("30112233-4455-6677-8899-aabbccddeeff"), "Inna",
                         chwila("2025-03-15T11:00:00Z"), 0, std::nullopt}},
          .doDecyzji = 3,
          .blad = std::nullopt};
}

TEST(WpisJson, WritesFieldsByTheirNamesAndLeavesAbsentOnesOut) {
  EXPECT_EQ(json::parse(Form::toJson(pelny())), json::parse(R"({
    "date": "2025-03-14T09:30:00.25Z",
    "zadania": [
      {"id": "00112233-4455-6677-8899-aabbccddeeff", "numer": 9223372036854775807, "tytul": "Wysłać „wniosek”",
       "termin": "2025-03-13T23:00:00Z", "status": "otwarte", "projektNazwa": "Pracownia"},
      {"id": "10112233-4455-6677-8899-aabbccddeeff", "numer": -1, "tytul": "", "status": "", "projektNazwa": ""}],
    "spotkania": [
      {"id": "20112233-4455-6677-8899-aabbccddeeff", "tytul": "Narada", "kiedy": "2025-03-14T11:00:00Z",
       "czasTrwaniaMin": 60, "projektNazwa": "Pracownia"},
      {"id": "30112233-4455-6677-8899-aabbccddeeff", "tytul": "Inna", "kiedy": "2025-03-15T11:00:00Z",
       "czasTrwaniaMin": 0}],
    "doDecyzji": 3})"));
}

TEST(WpisJson, ReadsBackWhatItWrote) {
  EXPECT_EQ(Form::fromJson(json::parse(Form::toJson(pelny()))), pelny());
  const Wpis zBledem{.date = chwila("2025-03-14T09:30:00Z"), .blad = "Brak połączenia z Vambą."};
  EXPECT_EQ(Form::fromJson(json::parse(Form::toJson(zBledem))), zBledem);
}

TEST(WpisJson, TakesNullForAbsentIgnoresOtherKeysAndCountsWholeNumbersHoweverWritten) {
  auto form = json::parse(Form::toJson(pelny()));
  form["zadania"][0]["termin"] = nullptr;
  form["zadania"][0]["numer"] = 7.0;
  form["blad"] = nullptr;
  form["relevance"] = {{"score", 1}};
  auto expected = pelny();
  expected.zadania[0].termin.reset();
  expected.zadania[0].numer = 7;
  EXPECT_EQ(Form::fromJson(form), expected);
}

struct Odmowa {
  const char* pole;  ///< a JSON pointer to what is replaced
  const char* wartosc;
  const char* blad;
};

class WpisJsonOdmawia : public testing::TestWithParam<Odmowa> {};

TEST_P(WpisJsonOdmawia, AndNamesTheField) {
  auto form = json::parse(Form::toJson(pelny()));
  form[json::json_pointer(GetParam().pole)] = json::parse(GetParam().wartosc);
  const auto read = Form::fromJson(form);
  ASSERT_FALSE(read.has_value());
  EXPECT_EQ(read.error(), GetParam().blad);
}

INSTANTIATE_TEST_SUITE_P(
    Pola, WpisJsonOdmawia,
    testing::Values(Odmowa{"", "[]", "entry: not an object"}, Odmowa{"/date", "\"2025-03-14\"", "date: not an instant"},
                    Odmowa{"/date", "null", "date: missing"}, Odmowa{"/date", "7", "date: not a text"},
                    Odmowa{"/zadania", "{}", "zadania: not an array"}, Odmowa{"/zadania", "null", "zadania: missing"},
                    Odmowa{"/zadania/1", "3", "zadania[1]: not an object"},
                    Odmowa{"/zadania/1/id", "\"7\"", "zadania[1].id: not a UUID"},
                    Odmowa{"/zadania/0/numer", "7.5", "zadania[0].numer: not an integer of 64 bits"},
                    Odmowa{"/zadania/0/numer", "9223372036854775808", "zadania[0].numer: not an integer of 64 bits"},
                    Odmowa{"/zadania/0/numer", "-9223372036854775809", "zadania[0].numer: not an integer of 64 bits"},
                    Odmowa{"/zadania/0/numer", "1e19", "zadania[0].numer: not an integer of 64 bits"},
                    Odmowa{"/zadania/0/termin", "\"jutro\"", "zadania[0].termin: not an instant"},
                    Odmowa{"/zadania/0/projektNazwa", "null", "zadania[0].projektNazwa: missing"},
                    Odmowa{"/spotkania/0/kiedy", "null", "spotkania[0].kiedy: missing"},
                    Odmowa{"/spotkania/1/projektNazwa", "[]", "spotkania[1].projektNazwa: not a text"},
                    Odmowa{"/doDecyzji", "\"3\"", "doDecyzji: not an integer of 64 bits"},
                    Odmowa{"/blad", "false", "blad: not a text"}));

}  // namespace
}  // namespace widzety
