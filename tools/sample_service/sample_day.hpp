// The sample days: what the service answers, as JSON texts, with every date counted from the moment of the request.
//
// Each day also holds what a board has to leave out (done, rejected and later tasks, a meeting under way, one the
// day after tomorrow) and keys that no reader knows, as a real service would.
#pragma once

#include <ctime>
#include <string>

#include "sample_texts.hpp"

namespace sample {

enum class Day { Full, Busy, Empty };

struct Answers {
  std::string zadania;    // GET /moje/zadania
  std::string skrzynka;   // GET /skrzynka
  std::string spotkania;  // GET /spotkania-planowane
};

// `now` in seconds since 1970 UTC. On the full day three meetings always lie between now and the end of tomorrow,
// as many of them today (two at most) as office hours still leave room for.
Answers answersFor(Day day, std::time_t now, Language language = Language::Polish);

}  // namespace sample
