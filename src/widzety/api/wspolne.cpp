#include "widzety/api/wspolne.hpp"

#include "widzety/model/dekodowanie.hpp"

namespace widzety {
namespace {

platform::UrlSessionConfiguration konfiguracjaSesji() {
  auto configuration = platform::UrlSessionConfiguration::ephemeral();
  configuration.timeoutIntervalForRequest = absl::Seconds(12);
  configuration.timeoutIntervalForResource = absl::Seconds(12);
  configuration.cookieAcceptPolicy = platform::CookieAcceptPolicy::never;
  configuration.shouldSetCookies = false;
  return configuration;
}

}  // namespace

const platform::UrlSession& wspolnaSesja() {
  static const platform::UrlSession sesja(konfiguracjaSesji());
  return sesja;
}

const platform::JsonDecoder& wspolnyDekoder() {
  static const platform::JsonDecoder dekoder = zrobDekoder();
  return dekoder;
}

}  // namespace widzety
