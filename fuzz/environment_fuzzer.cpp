// Any text as LANGUAGE (the first line) and TZ (the second). The languages are plain tags, the widget and the host
// choose the same one, and a clock can use the zone.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/texts/texts.hpp"
#include "platform/calendar/calendar.hpp"
#include "platform/calendar/device_time_zone.hpp"
#include "platform/languages/preferred_languages.hpp"
#include "require.hpp"
#include "widzety/texts/jezyk.hpp"

namespace {

using fuzz::require;

void checkLanguages() {
  const auto languages = platform::preferredLanguages();
  for (const std::string& language : languages) {
    require(!language.empty() && language.find_first_of(":.@") == std::string::npos);
    require(language != "C" && language != "POSIX");
    const std::string subtag = platform::primarySubtag(language);
    require(subtag.find_first_of("-_ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos);
    require(platform::primarySubtag(subtag) == subtag);
  }
  require(host::languageTag(host::languageOf(languages)) == widzety::wartoscSurowa(widzety::wybierzJezyk(languages)));
}

void checkZone() {
  const absl::TimeZone zone = platform::deviceTimeZone();
  const platform::Calendar calendar(zone);
  for (const std::int64_t seconds : {0LL, 1'741'944'600LL, 1'761'440'400LL}) {
    const absl::Time instant = absl::FromUnixSeconds(seconds);
    require(std::abs(zone.At(instant).offset) < 26 * 3600);
    require(calendar.isSameDay(instant, instant));
    require(absl::FormatTime("%H:%M", instant, zone).size() == 5);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto lineEnd = text.find('\n');
  const std::string zone = lineEnd == std::string::npos ? "" : text.substr(lineEnd + 1);
  // A path names a file of this machine, so the result would not depend on the input alone.
  if (text.find('/') != std::string::npos) return -1;
  ::setenv("LANGUAGE", text.substr(0, lineEnd).c_str(), 1);
  ::setenv("TZ", zone.c_str(), 1);
  checkLanguages();
  checkZone();
  return 0;
}
