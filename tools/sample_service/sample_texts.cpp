#include "sample_texts.hpp"

#include <algorithm>

namespace sample {
namespace {

struct Row {
  std::string_view polish;
  std::string_view english;
  std::string_view lithuanian;
};

constexpr Row kRows[] = {
    // Projects.
    {"Administracja", "Administration", "Administracija"},
    {"Administracja i sprawy ogólne, w tym zaległości z ubiegłego roku",
     "Administration and general matters, including the backlog of last year",
     "Administracija ir bendrieji reikalai, taip pat praėjusių metų skolos"},
    {"Biblioteka", "Library", "Biblioteka"},
    {"Dom", "Home", "Namai"},
    {"Dydaktyka", "Teaching", "Dėstymas"},
    {"Korekta", "Proofreading", "Korektūra"},
    {"Pracownia", "Workshop", "Dirbtuvė"},
    {"Strona wydawnictwa", "Publisher's website", "Leidyklos svetainė"},
    {"Współpraca z Tokio", "Work with Tokyo", "Bendradarbiavimas su Tokijumi"},
    {"Zakupy", "Purchases", "Pirkiniai"},
    // The full day.
    {"Wysłać zaproszenia na warsztaty", "Send the invitations to the workshop", "Išsiųsti kvietimus į dirbtuves"},
    {"Przygotować slajdy na seminarium", "Prepare the slides for the seminar", "Parengti skaidres seminarui"},
    {"Oddać rozliczenie delegacji", "Hand in the travel expenses", "Pateikti komandiruotės ataskaitą"},
    {"Opłacić domenę", "Pay for the domain", "Apmokėti domeną"},
    {"Przejrzeć umowę z drukarnią", "Review the contract with the printer", "Peržiūrėti sutartį su spaustuve"},
    {"Odpowiedzieć recenzentom", "Answer the reviewers", "Atsakyti recenzentams"},
    {"Zamówić poczęstunek", "Order the refreshments", "Užsakyti vaišes"},
    {"Umówić przegląd pieca", "Arrange the boiler inspection", "Susitarti dėl katilo patikros"},
    {"Sprawdzić prace zaliczeniowe", "Mark the term papers", "Patikrinti įskaitos darbus"},
    {"Poprawić opis zbioru danych", "Correct the description of the data set", "Pataisyti duomenų rinkinio aprašą"},
    {"Narada redakcyjna", "Editorial meeting", "Redakcijos pasitarimas"},
    {"Konsultacje ze studentami", "Office hours for students", "Konsultacijos studentams"},
    {"Rozmowa z archiwum w Wilnie", "Call with the archive in Vilnius", "Pokalbis su archyvu Vilniuje"},
    {"Seminarium zespołu", "Team seminar", "Komandos seminaras"},
    {"Przegląd poczty", "Going through the mail", "Pašto peržiūra"},
    {"Zaproponować termin kolejnej narady", "Propose a time for the next meeting", "Pasiūlyti kito pasitarimo laiką"},
    {"Sprawdzić, czy umowa obejmuje dodruk", "Check whether the contract covers a reprint",
     "Patikrinti, ar sutartis apima papildomą tiražą"},
    {"Dopisać Ingę do zespołu", "Add Inga to the team", "Įtraukti Ingą į komandą"},
    {"Zwrócić książki do biblioteki", "Return the books to the library", "Grąžinti knygas į biblioteką"},
    // The busy day.
    {"Uzgodnić z działem prawnym, finansowym i kadrami wspólny wzór umowy o dzieło na cały przyszły rok",
     "Agree on one template of a contract for the whole of next year with the legal, finance and staff departments",
     "Su teisės, finansų ir personalo skyriais suderinti bendrą sutarties pavyzdį visiems kitiems metams"},
    {"Zanieść tort 🎂 na urodziny Oli 👩‍👧", "Bring the cake 🎂 for Ola's birthday 👩‍👧",
     "Nunešti tortą 🎂 Olos gimtadieniui 👩‍👧"},
    {"Porównać oferty: cena < 500 zł & dostawa do piątku", "Compare the offers: price < 500 zł & delivery by Friday",
     "Palyginti pasiūlymus: kaina < 500 zł & pristatymas iki penktadienio"},
    {"Odesłać „Żółtą księgę” — wydanie drugie", "Send back “The Yellow Book” — second edition",
     "Grąžinti „Geltonąją knygą“ — antrasis leidimas"},
    {"Zadzwonić do Łucji", "Call Łucja", "Paskambinti Łucjai"},
    {"Spisać protokół", "Write the minutes", "Surašyti protokolą"},
    {"Oddać klucze", "Hand in the keys", "Atiduoti raktus"},
    {"Zamknąć rok", "Close the year", "Užbaigti metus"},
    {"Poranny przegląd zadań całego zespołu wraz z omówieniem wszystkich spraw odłożonych w zeszłym tygodniu",
     "The whole team's morning review of tasks, with everything that was put off last week",
     "Visos komandos rytinė užduočių peržiūra kartu su visais praėjusią savaitę atidėtais reikalais"},
    {"Rozmowa z drukarnią", "Call with the printer", "Pokalbis su spaustuve"},
    {"Obrona pracy magisterskiej", "Master's thesis defence", "Magistro darbo gynimas"},
    {"Przegląd budżetu", "Budget review", "Biudžeto peržiūra"},
    {"Kawa z Jurgitą ☕", "Coffee with Jurgita ☕", "Kava su Jurgita ☕"},
    {"Potwierdzić salę", "Confirm the room", "Patvirtinti salę"},
    {"Odpisać dziekanatowi", "Answer the dean's office", "Atsakyti dekanatui"},
    {"Przejrzeć transkrypt", "Review the transcript", "Peržiūrėti transkriptą"},
    {"Wybrać okładkę", "Choose the cover", "Parinkti viršelį"},
    {"Zgłosić usterkę", "Report the fault", "Pranešti apie gedimą"},
    {"Dodać Marka", "Add Marek", "Pridėti Mareką"},
    {"Zmienić hasło", "Change the password", "Pakeisti slaptažodį"},
    {"Sprawdzić fakturę", "Check the invoice", "Patikrinti sąskaitą"},
    {"Kupić toner", "Buy toner", "Nupirkti dažų"},
    {"Ustalić kolejność", "Settle the order", "Nustatyti eiliškumą"},
    {"Wysłać plakat", "Send the poster", "Išsiųsti plakatą"},
    {"Poprawić stopkę", "Correct the footer", "Pataisyti poraštę"},
};

}  // namespace

std::string_view translated(std::string_view polish, Language language) {
  const auto* const row = std::ranges::find(kRows, polish, &Row::polish);
  if (language == Language::Polish || row == std::end(kRows)) return polish;
  return language == Language::English ? row->english : row->lithuanian;
}

}  // namespace sample
