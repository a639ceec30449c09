// Any text in place of a date. What is read can be written and reads back as the same instant. With a time of day a
// reader of RFC 3339 agrees; without one Warsaw's calendar shows the date.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/text/instant.hpp"
#include "platform/calendar/calendar.hpp"
#include "require.hpp"
#include "widzety/model/data_serwera.hpp"

using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const absl::TimeZone warsaw = widzety::strefaDatySerwera();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto instant = widzety::wczytajDate(text, warsaw);
  if (!instant) {
    require(instant.error().description == "Nie rozpoznaję daty: " + std::string(text));
    require(instant.error().kind == platform::DecodingError::Kind::dataCorrupted);
    return 0;
  }

  const std::string written = base::formatInstant(*instant);
  require(base::parseInstant(written) == *instant);
  require(widzety::wczytajDate(written, warsaw) == *instant);
  constexpr std::size_t dateLength = 10;
  if (size > dateLength) {
    require(base::parseInstant(text) == *instant);
  } else {
    const platform::Calendar calendar(warsaw);
    require(absl::FormatTime("%E4Y-%m-%d", *instant, warsaw) == text);
    require(calendar.startOfDay(*instant) == *instant);
  }
  return 0;
}
