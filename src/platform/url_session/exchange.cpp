#include "platform/url_session/exchange.hpp"

#include <algorithm>
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include <openssl/ssl.h>

#include "platform/url_session/curl_error.hpp"

namespace platform {
namespace {

constexpr long receiveBufferBytes = 64 * 1024;

// Sets options until one fails.
class Options {
 public:
  explicit Options(CURL* handle) : handle_(handle) {}

  template <typename Value>
  Options& set(CURLoption option, Value value) {
    if (allSet_) allSet_ = curl_easy_setopt(handle_, option, value) == CURLE_OK;
    return *this;
  }

  bool allSet() const { return allSet_; }

 private:
  CURL* handle_;
  bool allSet_ = true;
};

}  // namespace

Exchange::Exchange(std::shared_ptr<PendingLoad> load, std::size_t longestBody)
    : load_(std::move(load)), response_(longestBody), easy_(curl_easy_init()) {}

std::unique_ptr<Exchange> Exchange::create(std::shared_ptr<PendingLoad> load, std::size_t longestBody,
                                           const TrustedCertificates& trusted) {
  std::unique_ptr<Exchange> exchange(new Exchange(std::move(load), longestBody));
  if (!exchange->easy_ || !exchange->setHeaders() || !exchange->setOptions(trusted, longestBody)) {
    return nullptr;
  }
  return exchange;
}

bool Exchange::setHeaders() {
  for (const base::SecretText& line : load_->headers().lines) {
    curl_slist* const longer = curl_slist_append(headers_.get(), line.cText());
    if (longer == nullptr) return false;
    (void)headers_.release();  // the longer list begins with the shorter one
    headers_.reset(longer);
  }
  return true;
}

bool Exchange::setOptions(const TrustedCertificates& trusted, std::size_t longestBody) {
  Options options(easy_.get());
  options.set(CURLOPT_URL, load_->url().text().c_str())
      .set(CURLOPT_PRIVATE, static_cast<void*>(this))
      .set(CURLOPT_ERRORBUFFER, errorText_.data())
      .set(CURLOPT_NOSIGNAL, 1L)
      .set(CURLOPT_NOPROGRESS, 1L)
      .set(CURLOPT_BUFFERSIZE, receiveBufferBytes)
      // When the load is abandoned, libcurl does not wait for its resolver thread.
      .set(CURLOPT_QUICK_EXIT, 1L)
      // The caller enforces the deadline; the library's own limit of five minutes for connecting does not apply.
      .set(CURLOPT_CONNECTTIMEOUT_MS, 0x7fffffffL);

  // The request.
  options.set(CURLOPT_PROTOCOLS_STR, "http,https")
      .set(CURLOPT_PATH_AS_IS, 1L)
      .set(CURLOPT_HTTPGET, 1L)
      .set(CURLOPT_HTTPHEADER, headers_.get())
      .set(CURLOPT_HEADEROPT, static_cast<long>(CURLHEADER_SEPARATE))  // a proxy's CONNECT gets no Authorization
      .set(CURLOPT_FOLLOWLOCATION, 0L)
      .set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_NONE))  // a user in the URL makes no Authorization of its own
      .set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED))
      .set(CURLOPT_HTTP09_ALLOWED, 1L)
      .set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L)
      .set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(longestBody))
      .set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));

  // Requests that run at the same time share one connection over HTTP/2, so each waits until a connection that is being
  // opened has negotiated its protocol. A connection that no request uses is closed: nothing that the server sends on
  // it later may reach the next request.
  options.set(CURLOPT_PIPEWAIT, load_->url().scheme() == "https" ? 1L : 0L).set(CURLOPT_FORBID_REUSE, 1L);

  // One of the two is null, so that nothing else is trusted. The library parses a file once for all connections of the
  // loop, which it does only where no folder is set.
  if (!trusted.file.empty() || !trusted.folder.empty()) {
    const char* const file = trusted.file.empty() ? nullptr : trusted.file.c_str();
    const char* const folder = trusted.folder.empty() ? nullptr : trusted.folder.c_str();
    options.set(CURLOPT_CAINFO, file)
        .set(CURLOPT_CAPATH, folder)
        .set(CURLOPT_PROXY_CAINFO, file)
        .set(CURLOPT_PROXY_CAPATH, folder);
  }

  options.set(CURLOPT_PREREQFUNCTION, &Exchange::onConnected)
      .set(CURLOPT_PREREQDATA, static_cast<void*>(this))
      .set(CURLOPT_HEADERFUNCTION, &Exchange::onHeader)
      .set(CURLOPT_HEADERDATA, static_cast<void*>(this))
      .set(CURLOPT_WRITEFUNCTION, &Exchange::onBody)
      .set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  return options.allSet();
}

LoadResult Exchange::result(CURLcode code) {
  using Kind = TransportError::Kind;
  if (response_.isTooLarge()) return std::unexpected(TransportError{Kind::tooLarge, code, "the answer is too large"});
  if (headerCannotBeSent_) {
    return std::unexpected(TransportError{Kind::badHeader, code, "HTTP/2 cannot carry a line end in a header value"});
  }
  if (repeats_) {
    return std::unexpected(TransportError{Kind::connectionLost, code, "the connection ended before an answer began"});
  }
  // After a 101 the library reports that nothing was received, although the header was complete.
  const bool nothingButHeader = code == CURLE_GOT_NOTHING && response_.hasWholeHeader();
  if (code != CURLE_OK && !nothingButHeader) return std::unexpected(transportError(code, errorText_.data()));
  if (!response_.hasWholeHeader() && response_.isEmpty()) {
    // The library reports success for an answer that was cut inside its header section.
    return std::unexpected(TransportError{Kind::connectionLost, code, "the connection ended inside the header"});
  }
  UrlResponse response;
  long status = 0;
  if (response_.hasWholeHeader() && curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status) == CURLE_OK &&
      status != 0) {
    response.statusCode = status;
  }
  return DataAndResponse{response_.takeBody(), response};
}

bool Exchange::connectionSpeaksHttp2() const {
  if (load_->url().scheme() != "https") return false;
  const curl_tlssessioninfo* tls = nullptr;
  if (curl_easy_getinfo(handle(), CURLINFO_TLS_SSL_PTR, &tls) != CURLE_OK || tls == nullptr ||
      tls->backend != CURLSSLBACKEND_OPENSSL || tls->internals == nullptr) {
    return true;  // unknown: assume that it does
  }
  const unsigned char* protocol = nullptr;
  unsigned int length = 0;
  SSL_get0_alpn_selected(static_cast<const SSL*>(tls->internals), &protocol, &length);
  return std::ranges::equal(std::span(protocol, length), std::string_view("h2"));
}

std::size_t Exchange::onHeader(char* bytes, std::size_t size, std::size_t count, void* self) {
  return static_cast<Exchange*>(self)->response_.takeHeaderLine({bytes, size * count}) ? size * count : 0;
}

std::size_t Exchange::onBody(char* bytes, std::size_t size, std::size_t count, void* self) try {
  auto& exchange = *static_cast<Exchange*>(self);
  const auto expectedLength = [&exchange]() -> std::optional<std::size_t> {
    curl_off_t length = -1;
    curl_easy_getinfo(exchange.handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    return length > 0 ? std::optional(static_cast<std::size_t>(length)) : std::nullopt;
  };
  return exchange.response_.takeBodyPiece({bytes, size * count}, expectedLength) ? size * count : 0;
} catch (const std::bad_alloc&) {
  return 0;  // no exception may cross the C library
}

int Exchange::onConnected(void* self, char*, char*, int, int) {
  auto& exchange = *static_cast<Exchange*>(self);
  // The library would repeat a request if its connection was used before and closes without an answer.
  exchange.repeats_ = std::exchange(exchange.sent_, true);
  exchange.headerCannotBeSent_ = exchange.load_->headers().endsInLineEnd && exchange.connectionSpeaksHttp2();
  return exchange.repeats_ || exchange.headerCannotBeSent_ ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

}  // namespace platform
