#include "widzety/model/dekodowanie.hpp"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "base/text/instant.hpp"
#include "widzety/model/klucze.hpp"

namespace widzety {
namespace {

using platform::DecodingError;
using Rodzaj = DecodingError::Kind;

constexpr std::string_view identyfikator = "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40";

absl::Time chwila(std::string_view tekst) { return base::parseInstant(tekst).value(); }

auto zadania(std::string_view tresc) { return zrobDekoder().decode<std::vector<ZadanieMoje>>(tresc); }
auto spotkania(std::string_view tresc) { return zrobDekoder().decode<std::vector<SpotkaniePlanowane>>(tresc); }
auto skrzynka(std::string_view tresc) { return zrobDekoder().decode<Skrzynka>(tresc); }

/// A task's object with one of its pairs replaced; an empty replacement leaves the pair out.
std::string obiekt(std::string_view klucz, std::string_view para,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> pary) {
  std::string tekst = "{";
  for (const auto& [k, wartosc] : pary) {
    const std::string ta = k == klucz ? std::string(para) : "\"" + std::string(k) + "\":" + std::string(wartosc);
    if (ta.empty()) continue;
    if (tekst.size() > 1) tekst += ",";
    tekst += ta;
  }
  return tekst + "}";
}

std::string zadanie(std::string_view klucz = {}, std::string_view para = {}) {
  return obiekt(klucz, para,
                {{"id", R"("6F1C2B9E-0D7A-4D0C-9A57-3E1F5B8C2D40")"},
                 {"numer", "482"},
                 {"tytul", R"("Oddać klucze")"},
                 {"termin", R"("2025-03-14")"},
                 {"status", R"("otwarte")"},
                 {"projekt_nazwa", R"("Dom")"}});
}

std::string spotkanie(std::string_view klucz = {}, std::string_view para = {}) {
  return obiekt(klucz, para,
                {{"id", R"("6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40")"},
                 {"tytul", R"("Przegląd")"},
                 {"kiedy", R"("2025-03-14T09:30:00+01:00")"},
                 {"czas_trwania_min", "30"},
                 {"projekt_nazwa", R"("Dom")"}});
}

std::string lista(const std::string& element) { return "[" + element + "]"; }

TEST(Dekodowanie, ReadsATaskWithAllItsFields) {
  const ZadanieMoje spodziewane{.id = *base::Uuid::parse(identyfikator),
                                .numer = 482,
                                .tytul = "Oddać klucze",
                                .termin = chwila("2025-03-13T23:00:00Z"),
                                .status = "otwarte",
                                .projektNazwa = "Dom"};
  const auto wynik = zadania(lista(zadanie()));
  ASSERT_TRUE(wynik) << wynik.error().description;
  EXPECT_EQ(*wynik, std::vector{spodziewane});
}

TEST(Dekodowanie, ReadsAMeetingWithAllItsFields) {
  const SpotkaniePlanowane spodziewane{.id = *base::Uuid::parse(identyfikator),
                                       .tytul = "Przegląd",
                                       .kiedy = chwila("2025-03-14T08:30:00Z"),
                                       .czasTrwaniaMin = 30,
                                       .projektNazwa = "Dom"};
  const auto wynik = spotkania(lista(spotkanie()));
  ASSERT_TRUE(wynik) << wynik.error().description;
  EXPECT_EQ(*wynik, std::vector{spodziewane});
}

TEST(Dekodowanie, ReadsTheInbox) {
  const std::string pozycja = R"({"id":"6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40","tytul":"Oferta"})";
  const auto wynik = skrzynka(R"({"zadania":[)" + pozycja + "," + pozycja + "," + pozycja + R"(],"inne":7})");
  ASSERT_TRUE(wynik) << wynik.error().description;
  ASSERT_EQ(wynik->zadania.size(), 3U);
  EXPECT_EQ(wynik->zadania[2], (PozycjaSkrzynki{*base::Uuid::parse(identyfikator), "Oferta"}));
}

TEST(Dekodowanie, EmptyListsAreEmpty) {
  EXPECT_EQ(zadania("[]").value().size(), 0U);
  EXPECT_EQ(spotkania(" [ ] ").value().size(), 0U);
  EXPECT_EQ(skrzynka(R"({"zadania": []})").value().zadania.size(), 0U);
}

TEST(Dekodowanie, KeepsTheOrderOfTheArray) {
  const auto wynik = zadania("[" + zadanie("numer", R"("numer":3)") + "," + zadanie("numer", R"("numer":1)") + "," +
                             zadanie("numer", R"("numer":2)") + "]");
  ASSERT_TRUE(wynik);
  EXPECT_EQ(wynik->at(0).numer, 3);
  EXPECT_EQ(wynik->at(1).numer, 1);
  EXPECT_EQ(wynik->at(2).numer, 2);
}

TEST(Dekodowanie, ATaskMayLackItsDeadline) {
  for (const std::string_view para : {"", R"("termin":null)"}) {
    const auto wynik = zadania(lista(zadanie("termin", para)));
    ASSERT_TRUE(wynik) << para;
    EXPECT_EQ(wynik->front().termin, std::nullopt) << para;
  }
}

TEST(Dekodowanie, AMeetingMayLackItsProject) {
  for (const std::string_view para : {"", R"("projekt_nazwa":null)"}) {
    const auto wynik = spotkania(lista(spotkanie("projekt_nazwa", para)));
    ASSERT_TRUE(wynik) << para;
    EXPECT_EQ(wynik->front().projektNazwa, std::nullopt) << para;
  }
}

TEST(Dekodowanie, KeepsAStatusThatNobodyKnows) {
  for (const std::string_view status : {"w_toku", "zrobione", "odrzucone", "Otwarte", "zupełnie nowy", ""}) {
    const auto wynik = zadania(lista(zadanie("status", R"("status":")" + std::string(status) + "\"")));
    ASSERT_TRUE(wynik) << status;
    EXPECT_EQ(wynik->front().status, status);
  }
}

TEST(Dekodowanie, IgnoresKeysThatNoFieldHas) {
  const std::string dodatki = R"("extra":[{"id":1}],"projektNazwa":5,"Tytul":null,"":{},"termin ":1e300)";
  const auto wynik = zadania("[{" + dodatki + "," + zadanie().substr(1) + "]");
  ASSERT_TRUE(wynik) << wynik.error().description;
  EXPECT_EQ(*wynik, zadania(lista(zadanie())).value());
}

TEST(Dekodowanie, EveryRequiredFieldMustBeThereAndNotNull) {
  for (const std::string_view klucz : {"id", "numer", "tytul", "status", "projekt_nazwa"}) {
    const auto brak = zadania(lista(zadanie(klucz)));
    ASSERT_FALSE(brak) << klucz;
    EXPECT_EQ(brak.error().kind, Rodzaj::keyNotFound) << klucz;
    const auto puste = zadania(lista(zadanie(klucz, "\"" + std::string(klucz) + "\":null")));
    ASSERT_FALSE(puste) << klucz;
    EXPECT_EQ(puste.error().kind, Rodzaj::valueNotFound) << klucz;
    EXPECT_EQ(puste.error().codingPath, "[0]." + std::string(klucz));
  }
  for (const std::string_view klucz : {"id", "tytul", "kiedy", "czas_trwania_min"}) {
    const auto brak = spotkania(lista(spotkanie(klucz)));
    ASSERT_FALSE(brak) << klucz;
    EXPECT_EQ(brak.error().kind, Rodzaj::keyNotFound) << klucz;
    const auto puste = spotkania(lista(spotkanie(klucz, "\"" + std::string(klucz) + "\":null")));
    ASSERT_FALSE(puste) << klucz;
    EXPECT_EQ(puste.error().kind, Rodzaj::valueNotFound) << klucz;
  }
  for (const std::string_view tresc :
       {"{}", R"({"zadania":null})", R"({"zadania":[{"id":"6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40"}]})",
        R"({"zadania":[{"tytul":"a"}]})"}) {
    EXPECT_FALSE(skrzynka(tresc)) << tresc;
  }
}

struct ZlaPara {
  std::string_view klucz;
  std::string_view para;
  Rodzaj rodzaj;
};

TEST(Dekodowanie, AValueOfTheWrongTypeFailsATask) {
  const ZlaPara przypadki[] = {
      {"id", R"("id":5)", Rodzaj::typeMismatch},
      {"id", R"("id":"5")", Rodzaj::dataCorrupted},
      {"id", R"("id":"{6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40}")", Rodzaj::dataCorrupted},
      {"numer", R"("numer":7.5)", Rodzaj::dataCorrupted},
      {"numer", R"("numer":9223372036854775808)", Rodzaj::dataCorrupted},
      {"numer", R"("numer":1e19)", Rodzaj::dataCorrupted},
      {"numer", R"("numer":"7")", Rodzaj::typeMismatch},
      {"numer", R"("numer":true)", Rodzaj::typeMismatch},
      {"numer", R"("numer":[7])", Rodzaj::typeMismatch},
      {"tytul", R"("tytul":7)", Rodzaj::typeMismatch},
      {"tytul", R"("tytul":["a"])", Rodzaj::typeMismatch},
      {"termin", R"("termin":5)", Rodzaj::typeMismatch},
      {"termin", R"("termin":false)", Rodzaj::typeMismatch},
      {"termin", R"("termin":{})", Rodzaj::typeMismatch},
      {"termin", R"("termin":"")", Rodzaj::dataCorrupted},
      {"termin", R"("termin":"null")", Rodzaj::dataCorrupted},
      {"status", R"("status":1)", Rodzaj::typeMismatch},
      {"projekt_nazwa", R"("projekt_nazwa":{})", Rodzaj::typeMismatch},
  };
  for (const auto& [klucz, para, rodzaj] : przypadki) {
    const auto wynik = zadania(lista(zadanie(klucz, para)));
    ASSERT_FALSE(wynik) << para;
    EXPECT_EQ(wynik.error().kind, rodzaj) << para;
    EXPECT_EQ(wynik.error().codingPath, "[0]." + std::string(klucz)) << para;
  }
}

TEST(Dekodowanie, AValueOfTheWrongTypeFailsAMeeting) {
  const ZlaPara przypadki[] = {
      {"czas_trwania_min", R"("czas_trwania_min":"30")", Rodzaj::typeMismatch},
      {"czas_trwania_min", R"("czas_trwania_min":30.5)", Rodzaj::dataCorrupted},
      {"kiedy", R"("kiedy":1741944600)", Rodzaj::typeMismatch},
      {"kiedy", R"("kiedy":"14.03.2025")", Rodzaj::dataCorrupted},
      {"projekt_nazwa", R"("projekt_nazwa":5)", Rodzaj::typeMismatch},
  };
  for (const auto& [klucz, para, rodzaj] : przypadki) {
    const auto wynik = spotkania(lista(spotkanie(klucz, para)));
    ASSERT_FALSE(wynik) << para;
    EXPECT_EQ(wynik.error().kind, rodzaj) << para;
  }
}

TEST(Dekodowanie, AnIntegerMayBeWrittenInAnyWay) {
  for (const std::string_view liczba : {"7", "7.0", "7e0", "70e-1", "0.7E+1"}) {
    EXPECT_EQ(zadania(lista(zadanie("numer", R"("numer":)" + std::string(liczba)))).value().front().numer, 7) << liczba;
  }
}

TEST(Dekodowanie, ADateThatNobodyCanReadKeepsItsDescription) {
  const auto wynik = zadania("[" + zadanie() + "," + zadanie("termin", R"("termin":"14.03.2025")") + "]");
  ASSERT_FALSE(wynik);
  EXPECT_EQ(wynik.error(), (DecodingError{Rodzaj::dataCorrupted, "[1].termin", "Nie rozpoznaję daty: 14.03.2025"}));
  EXPECT_EQ(zadania(lista(zadanie("termin", R"("termin":"")"))).error().description, "Nie rozpoznaję daty: ");
}

TEST(Dekodowanie, OneBadElementFailsTheWholeList) {
  EXPECT_FALSE(zadania("[" + zadanie() + "," + zadanie() + ",{}]"));
  EXPECT_FALSE(zadania("[null," + zadanie() + "]"));
  EXPECT_FALSE(spotkania("[" + spotkanie() + ",[]]"));
}

TEST(Dekodowanie, TheWholeBodyMustBeOfTheResourcesShape) {
  for (const std::string_view tresc : {"", " ", "null", "5", "\"a\"", "true", "[[]]", "[1]", R"({"zadania":{}})"}) {
    EXPECT_FALSE(zadania(tresc)) << tresc;
    EXPECT_FALSE(spotkania(tresc)) << tresc;
    EXPECT_FALSE(skrzynka(tresc)) << tresc;
  }
  EXPECT_FALSE(zadania("{}"));
  EXPECT_FALSE(skrzynka("[]"));
  EXPECT_FALSE(skrzynka(lista(R"({"zadania":[]})")));
}

TEST(KluczeKodowania, StandInTheOrderOfTheFieldsAndAreFoundByText) {
  using Z = Klucz<ZadanieMoje>;
  static_assert(tekstKlucza<ZadanieMoje>(Z::projektNazwa) == "projekt_nazwa");
  static_assert(tekstKlucza<SpotkaniePlanowane>(Klucz<SpotkaniePlanowane>::czasTrwaniaMin) == "czas_trwania_min");
  static_assert(tekstKlucza<PozycjaSkrzynki>(Klucz<PozycjaSkrzynki>::tytul) == "tytul");
  static_assert(tekstKlucza<Skrzynka>(Klucz<Skrzynka>::zadania) == "zadania");
  EXPECT_EQ(kluczOTekscie<ZadanieMoje>("termin"), Z::termin);
  EXPECT_EQ(kluczOTekscie<SpotkaniePlanowane>("kiedy"), Klucz<SpotkaniePlanowane>::kiedy);
  for (const std::string_view tekst : {"", "0", "1", "projektNazwa", "Id", "id ", "kiedy"}) {
    EXPECT_EQ(kluczOTekscie<ZadanieMoje>(tekst), std::nullopt) << tekst;
  }
  EXPECT_EQ(KluczeKodowania<ZadanieMoje>::teksty,
            (std::array<std::string_view, 6>{"id", "numer", "tytul", "termin", "status", "projekt_nazwa"}));
  EXPECT_EQ(KluczeKodowania<SpotkaniePlanowane>::teksty,
            (std::array<std::string_view, 5>{"id", "tytul", "kiedy", "czas_trwania_min", "projekt_nazwa"}));
}

template <typename Rekord, typename Szukane>
concept MaKluczO = requires(Szukane szukane) { kluczOTekscie<Rekord>(szukane); };
static_assert(MaKluczO<ZadanieMoje, const char*>);
static_assert(!MaKluczO<ZadanieMoje, int>, "a key has no integer form");

}  // namespace
}  // namespace widzety
