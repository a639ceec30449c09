// How the service's JSON becomes records: which key holds which field, and the decoder that reads them.
// The bodies come from the service client, which also keeps the one decoder of the process.
#pragma once

#include <expected>
#include <string_view>
#include <vector>

#include "platform/json_decoding/json_decoder.hpp"
#include "widzety/model/rekordy.hpp"

namespace widzety {

platform::Decoded decodeInto(const platform::JsonValue& wartosc, ZadanieMoje& zadanie);
platform::Decoded decodeInto(const platform::JsonValue& wartosc, SpotkaniePlanowane& spotkanie);
platform::Decoded decodeInto(const platform::JsonValue& wartosc, PozycjaSkrzynki& pozycja);
platform::Decoded decodeInto(const platform::JsonValue& wartosc, Skrzynka& skrzynka);

/// A decoder for the service's bodies: dates by wczytajDate(), their zone looked up once, here.
platform::JsonDecoder zrobDekoder();

// The three resources. One element that does not decode fails the whole list; no partial list survives.

/// "/moje/zadania": an array of tasks.
std::expected<std::vector<ZadanieMoje>, platform::DecodingError> dekodujZadania(const platform::JsonDecoder& dekoder,
                                                                                std::string_view tresc);
/// "/spotkania-planowane": an array of meetings.
std::expected<std::vector<SpotkaniePlanowane>, platform::DecodingError> dekodujSpotkania(
    const platform::JsonDecoder& dekoder, std::string_view tresc);
/// "/skrzynka": one inbox.
std::expected<Skrzynka, platform::DecodingError> dekodujSkrzynke(const platform::JsonDecoder& dekoder,
                                                                 std::string_view tresc);

}  // namespace widzety
