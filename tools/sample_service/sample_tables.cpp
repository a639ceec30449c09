#include "sample_tables.hpp"

#include <array>

namespace sample {
namespace {

// A day-only deadline means midnight in Warsaw, which is another day in distant zones. Only deadlines two days or
// more away from today are written so; those of today and its neighbours name an hour.
constexpr auto kFullTasks = std::to_array<TaskRow>({
    {63, "Wysłać zaproszenia na warsztaty", Deadline{0, 15, 0, DateForm::Offset}, "otwarte", "Pracownia"},
    {71, "Przygotować slajdy na seminarium", Deadline{1, 12, 0, DateForm::Offset}, "otwarte", "Dydaktyka"},
    {41, "Oddać rozliczenie delegacji", Deadline{-3, 0, 0, DateForm::Day}, "w_toku", "Administracja"},
    {52, "Opłacić domenę", Deadline{-2, 0, 0, DateForm::Day}, "zrobione", "Strona wydawnictwa"},
    {66, "Przejrzeć umowę z drukarnią", Deadline{0, 17, 30, DateForm::UtcFraction}, "w_toku", "Strona wydawnictwa"},
    {57, "Odpowiedzieć recenzentom", Deadline{-1, 16, 0, DateForm::Utc}, "otwarte", "Pracownia"},
    {70, "Zamówić poczęstunek", Deadline{0, 10, 0, DateForm::Utc}, "odrzucone", "Administracja"},
    {68, "Umówić przegląd pieca", Deadline{0, 19, 0, DateForm::Offset}, "otwarte", "Dom"},
    {74, "Sprawdzić prace zaliczeniowe", Deadline{6, 0, 0, DateForm::Day}, "otwarte", "Dydaktyka"},
    {75, "Poprawić opis zbioru danych", std::nullopt, "w_toku", "Pracownia"},
});

constexpr auto kFullMeetings = std::to_array<MeetingRow>({
    {"Narada redakcyjna", 45, "Strona wydawnictwa"},
    {"Konsultacje ze studentami", 60, "Dydaktyka"},
    {"Rozmowa z archiwum w Wilnie", 30, ""},
});

constexpr auto kFullInbox = std::to_array<std::string_view>({
    "Zaproponować termin kolejnej narady",
    "Sprawdzić, czy umowa obejmuje dodruk",
    "Dopisać Ingę do zespołu",
    "Zwrócić książki do biblioteki",
});

constexpr auto kBusyTasks = std::to_array<TaskRow>({
    {101, "Uzgodnić z działem prawnym, finansowym i kadrami wspólny wzór umowy o dzieło na cały przyszły rok",
     Deadline{-9, 0, 0, DateForm::Day}, "otwarte", "Administracja i sprawy ogólne, w tym zaległości z ubiegłego roku"},
    {102, "東京の研究室との打ち合わせを準備する", Deadline{-4, 0, 0, DateForm::Day}, "w_toku", "Współpraca z Tokio"},
    {103, "Zaz\u0307o\u0301łcic\u0301 ge\u0328s\u0301la\u0328 jaz\u0301n\u0301", Deadline{-2, 0, 0, DateForm::Day},
     "otwarte", "Korekta"},
    {104, "Zanieść tort 🎂 na urodziny Oli 👩‍👧", Deadline{0, 16, 0, DateForm::Offset}, "otwarte", "Dom"},
    {105, "Porównać oferty: cena < 500 zł & dostawa do piątku", Deadline{0, 12, 0, DateForm::Utc}, "otwarte", "Zakupy"},
    {106, "Odesłać „Żółtą księgę” — wydanie drugie", Deadline{-1, 9, 0, DateForm::UtcFraction}, "w_toku", "Biblioteka"},
    {107, "Zadzwonić do Łucji", Deadline{0, 18, 0, DateForm::Offset}, "otwarte", "Dom"},
    {108, "Spisać protokół", Deadline{0, 20, 0, DateForm::Offset}, "wstrzymane", "Pracownia"},
    {109, "Oddać klucze", Deadline{-1, 8, 0, DateForm::Utc}, "zrobione", "Administracja"},
    {1234567, "Zamknąć rok", Deadline{30, 0, 0, DateForm::Day}, "otwarte", "Administracja"},
});

constexpr auto kBusyMeetings = std::to_array<MeetingRow>({
    {"Poranny przegląd zadań całego zespołu wraz z omówieniem wszystkich spraw odłożonych w zeszłym tygodniu", 15,
     "Pracownia"},
    {"Rozmowa z drukarnią", 30, "Strona wydawnictwa"},
    {"東京", 60, "Współpraca z Tokio"},
    {"Obrona pracy magisterskiej", 90, "Dydaktyka"},
    {"Przegląd budżetu", 45, "Administracja"},
    {"Kawa z Jurgitą ☕", 30, ""},
});

constexpr auto kBusyInbox = std::to_array<std::string_view>({
    "Potwierdzić salę",
    "Odpisać dziekanatowi",
    "Przejrzeć transkrypt",
    "Wybrać okładkę",
    "Zgłosić usterkę",
    "Dodać Marka",
    "Zmienić hasło",
    "Sprawdzić fakturę",
    "Kupić toner",
    "Ustalić kolejność",
    "Wysłać plakat",
    "Poprawić stopkę",
});

}  // namespace

DayRows fullDay() { return {kFullTasks, kFullMeetings, 2, kFullInbox}; }

DayRows busyDay() { return {kBusyTasks, kBusyMeetings, 4, kBusyInbox}; }

}  // namespace sample
