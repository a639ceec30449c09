#include "host/doctor/environment_findings.hpp"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <system_error>

#include <absl/time/clock.h>
#include <absl/time/time.h>

#include "base/files/read_file.hpp"
#include "host/texts/texts.hpp"
#include "platform/calendar/device_time_zone.hpp"
#include "platform/keychain/keychain_environment.hpp"
#include "platform/languages/preferred_languages.hpp"
#include "platform/trust/trusted_certificates.hpp"

namespace host {
namespace {

std::string_view nameOf(Language language) {
  switch (language) {
    case Language::english:
      return "English";
    case Language::lithuanian:
      return "Lithuanian";
    case Language::polish:
      break;
  }
  return "Polish";
}

/// "LANGUAGE=en_GB": the first of the variables that is set.
std::optional<std::string> languageVariable() {
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const auto value = platform::environmentText(name)) return std::string(name) + "=" + *value;
  }
  return std::nullopt;
}

/// A rule such as CET-1CEST,M3.5.0,M10.5.0/3 holds an offset; a zone's name without digits that the system does not
/// know is read as UTC (tzset(3)).
bool isUnknownZone(const std::string& value) {
  return platform::deviceTimeZone().name().starts_with("libc:") &&
         std::ranges::none_of(value, [](char c) { return c >= '0' && c <= '9'; });
}

std::size_t count(std::string_view text, std::string_view part) {
  std::size_t found = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) ++found;
  return found;
}

/// Certificates in a file of PEM; 0 where it cannot be read. A pipe or device is not opened.
std::size_t certificatesIn(const std::filesystem::path& file) {
  constexpr std::size_t largest = std::size_t{16} << 20;
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return 0;
  const auto text = base::readFile(file, largest);
  return text ? count(*text, "-----BEGIN CERTIFICATE-----") + count(*text, "-----BEGIN TRUSTED CERTIFICATE-----") : 0;
}

std::string certificates(std::size_t number) {
  return std::to_string(number) + (number == 1 ? " certificate" : " certificates");
}

}  // namespace

Finding languageFinding() {
  const std::string asked = languageVariable().value_or("");
  const auto preferred = platform::preferredLanguages();
  std::string what(nameOf(userLanguage()));
  if (preferred.empty()) {
    what += asked.empty() ? ", since no variable names another" : ", since " + asked + " names no language";
  } else {
    const std::string first = platform::primarySubtag(preferred.front());
    const bool spoken = first == languageTag(userLanguage());
    what += spoken ? ", as " + asked + " asks" : ", since the widget does not speak what " + asked + " asks for";
  }
  return {.subject = "language", .what = what};
}

Finding zoneFinding() {
  constexpr const char* advice =
      "Name a zone of /usr/share/zoneinfo, such as Europe/Warsaw; the package tzdata has them.";
  Finding finding{.subject = "time zone"};
  const char* const named = std::getenv("TZ");
  if (named != nullptr && isUnknownZone(named)) {
    finding.verdict = Verdict::fault;
    finding.what = std::string("TZ=") + named + " names no zone that this system knows; days are computed in UTC";
    finding.advice = advice;
    return finding;
  }
  const absl::TimeZone zone = platform::deviceTimeZone();
  // "libc:localtime" is the loader's own word for what the C library alone can read.
  const std::string name = zone.name().starts_with("libc:") ? "a zone without a name" : zone.name();
  const std::string source = named == nullptr ? "/etc/localtime" : std::string("TZ=") + named;
  finding.what = name + ", as " + source + " says; it is " + absl::FormatTime("%H:%M", absl::Now(), zone);
  if (absl::TimeZone warsaw; !absl::LoadTimeZone("Europe/Warsaw", &warsaw)) {
    finding.verdict = Verdict::note;
    finding.what += "; the zone Europe/Warsaw, in which the service's days begin, is missing";
    finding.advice = "Install the package tzdata.";
  }
  return finding;
}

Finding certificatesFinding(const std::filesystem::path& systemFolder) {
  Finding finding{.subject = "certificates"};
  if (const auto file = platform::environmentText("SSL_CERT_FILE")) {
    const auto number = certificatesIn(*file);
    finding.what = certificates(number) + " in " + *file + ", which SSL_CERT_FILE names; no others are trusted";
    if (number > 0) return finding;
    finding.verdict = Verdict::fault;
    finding.what = "SSL_CERT_FILE names " + *file + ", which holds no certificate that can be read; none is trusted";
    finding.advice = "Unset SSL_CERT_FILE, or name a file of certificates in PEM.";
    return finding;
  }
  const auto hashed = platform::hashedCertificatesIn(systemFolder);
  const auto bundle = systemFolder / "ca-certificates.crt";
  const auto bundled = hashed > 0 ? 0 : certificatesIn(bundle);
  finding.what = hashed > 0 ? certificates(hashed) + " in " + systemFolder.string()
                            : certificates(bundled) + " in " + bundle.string();
  if (hashed + bundled > 0) return finding;
  finding.verdict = Verdict::fault;
  finding.what = "none are installed in " + systemFolder.string();
  finding.advice = "Install the package ca-certificates.";
  return finding;
}

}  // namespace host
