// How the service's JSON becomes records: which key holds which field, and the decoder that reads them.
// The bodies come from the service client, which also keeps the one decoder of the process.
#pragma once

#include "platform/json_decoding/json_decoder.hpp"
#include "widzety/model/rekordy.hpp"

namespace widzety {

platform::Decoded decodeInto(const platform::JsonValue& wartosc, ZadanieMoje& zadanie);
platform::Decoded decodeInto(const platform::JsonValue& wartosc, SpotkaniePlanowane& spotkanie);
platform::Decoded decodeInto(const platform::JsonValue& wartosc, PozycjaSkrzynki& pozycja);
platform::Decoded decodeInto(const platform::JsonValue& wartosc, Skrzynka& skrzynka);

/// A decoder for the service's bodies: dates by wczytajDate(), their zone looked up once, here.
platform::JsonDecoder zrobDekoder();

}  // namespace widzety
