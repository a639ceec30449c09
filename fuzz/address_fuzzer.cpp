// Any text as the service's address. What is accepted is printable ASCII, so it cannot end a line of a request, and a
// URL with a plain host name leads libcurl to the host and port that the session sees.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include <curl/curl.h>

#include "platform/url/url.hpp"
#include "require.hpp"

namespace {

using fuzz::require;
using platform::Url;

struct FreeText {
  void operator()(char* text) const { curl_free(text); }
};

/// Letters and dots: nothing that libcurl would rewrite, such as "%41" or the address 0x7f.1.
bool isPlainName(const std::string& host) {
  return std::ranges::all_of(host, [](char c) { return c == '.' || c == '-' || (c >= 'a' && c <= 'z'); });
}

std::string partOf(CURLU* url, CURLUPart part, unsigned flags) {
  char* text = nullptr;
  if (curl_url_get(url, part, &text, flags) != CURLUE_OK) return {};
  const std::unique_ptr<char, FreeText> owned(text);
  return text;
}

void compareWithCurl(const Url& url) {
  if ((url.scheme() != "http" && url.scheme() != "https") || !url.host() || !isPlainName(*url.host())) return;
  const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> peer(curl_url(), &curl_url_cleanup);
  if (curl_url_set(peer.get(), CURLUPART_URL, url.text().c_str(), 0) != CURLUE_OK) return;
  std::string host = partOf(peer.get(), CURLUPART_HOST, 0);
  std::ranges::transform(host, host.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  require(host == *url.host());
  if (url.port())
    require(std::stoul(*url.port()) == std::stoul(partOf(peer.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto url = Url::parse(text);
  if (!url) return 0;
  require(url->text() == text);
  require(std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7f'; }));
  require(Url::parse(url->text()) == url);
  // What the widget asks for lies below the address, at the same host.
  if (const auto below = Url::parse(text + "/moje/zadania")) {
    if (text.find_first_of("?#") == std::string::npos && url->host()) require(below->host() == url->host());
  }
  compareWithCurl(*url);
  return 0;
}
