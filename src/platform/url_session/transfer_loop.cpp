#include "platform/url_session/transfer_loop.hpp"

#include <algorithm>
#include <chrono>
#include <limits>

#include <curl/curl.h>
#include <openssl/ssl.h>

#include "platform/url_session/curl_error.hpp"

namespace platform {
namespace {

// A session talks to a handful of origins; past this many, what was learnt is forgotten rather than kept for ever.
constexpr std::size_t mostRememberedOrigins = 64;

// Loaded once for the life of the process and never unloaded: other code in the process may use the library too. Left
// to itself, the TLS library takes itself down before those sessions that were made before it was loaded, which then
// close their connections without it.
bool libraryIsLoaded() {
  static const bool loaded =
      OPENSSL_init_ssl(OPENSSL_INIT_NO_ATEXIT, nullptr) == 1 && curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return loaded;
}

std::string originOf(const Url& url) {
  return url.scheme().value_or("") + "://" + url.host().value_or("") + ":" + url.port().value_or("");
}

}  // namespace

TransferLoop::TransferLoop(LoadQueue& queue, const TransferSettings& settings) : queue_(queue), settings_(settings) {
  if (libraryIsLoaded()) multi_.reset(curl_multi_init());
  if (multi_) queue_.setWaker([multi = multi_.get()] { curl_multi_wakeup(multi); });
}

TransferLoop::~TransferLoop() { queue_.setWaker({}); }

void TransferLoop::run() {
  if (!multi_) return queue_.refuse({TransportError::Kind::other, 0, "the HTTP library did not start"});
  while (takeSubmitted()) {
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    collectFinished();
    giveUpOverdueAndAbandoned();
    curl_multi_poll(multi_.get(), nullptr, 0, waitMilliseconds(), nullptr);
  }
  cancelAll();
}

// Begins what callers have asked for since the last round. False when the session is ending.
bool TransferLoop::takeSubmitted() {
  const auto loads = queue_.take();
  if (!loads) return false;
  for (const auto& load : *loads) {
    if (!load->isAbandoned()) begin(load);
  }
  return true;
}

void TransferLoop::begin(const std::shared_ptr<PendingLoad>& load) {
  const auto multiplexing =
      originsWithHttp2_.contains(originOf(load->url())) ? Multiplexing::waitForConnection : Multiplexing::ifConnected;
  auto exchange = Exchange::create(load, settings_.longestBody, trustedFor(load->url()), multiplexing);
  if (!exchange || curl_multi_add_handle(multi_.get(), exchange->handle()) != CURLM_OK) {
    load->settle(std::unexpected(TransportError{TransportError::Kind::other, 0, "the transfer could not be set up"}));
    return;
  }
  exchanges_.push_back(std::move(exchange));
}

void TransferLoop::collectFinished() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode code = message->data.result;  // the message is gone once its handle is removed
    Exchange* exchange = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &exchange);
    if (code == CURLE_OK) rememberProtocol(*exchange);
    finish(*exchange, exchange->result(code));
  }
}

void TransferLoop::giveUpOverdueAndAbandoned() {
  const auto now = Clock::now();
  for (std::size_t i = exchanges_.size(); i-- > 0;) {  // from the end, as `finish` erases
    Exchange& exchange = *exchanges_[i];
    if (exchange.load().isAbandoned()) {
      finish(exchange, std::unexpected(cancelledError()));
    } else if (exchange.deadline() <= now) {
      finish(exchange, std::unexpected(TransportError{TransportError::Kind::timedOut, 0, "the time-out passed"}));
    }
  }
}

// The caller is told first: what the library then does to its connection is no time of theirs.
void TransferLoop::finish(Exchange& exchange, LoadResult result) {
  exchange.load().settle(std::move(result));
  curl_multi_remove_handle(multi_.get(), exchange.handle());
  std::erase_if(exchanges_, [&exchange](const auto& each) { return each.get() == &exchange; });
}

void TransferLoop::rememberProtocol(const Exchange& exchange) {
  const Url& url = exchange.load().url();
  if (url.scheme() != "https") return;
  if (!exchange.usedHttp2()) {
    originsWithHttp2_.erase(originOf(url));
    return;
  }
  if (originsWithHttp2_.size() >= mostRememberedOrigins) originsWithHttp2_.clear();
  originsWithHttp2_.insert(originOf(url));
}

void TransferLoop::cancelAll() {
  while (!exchanges_.empty()) finish(*exchanges_.back(), std::unexpected(cancelledError()));
}

// Plain HTTP needs no look at the system's certificates. A chosen file holds for a proxy with TLS too.
const TrustedCertificates& TransferLoop::trustedFor(const Url& url) {
  static const TrustedCertificates defaults;
  if (url.scheme() != "https" && settings_.trustedRootsFile.empty()) return defaults;
  if (!trusted_) trusted_ = TrustedCertificates::choose(settings_.trustedRootsFile, settings_.trustedRootsFolder);
  return *trusted_;
}

// Until the next deadline, a millisecond late rather than early; the library shortens it to its own timers.
int TransferLoop::waitMilliseconds() const {
  auto next = Clock::time_point::max();
  for (const auto& exchange : exchanges_) next = std::min(next, exchange->deadline());
  constexpr int longest = std::numeric_limits<int>::max();
  const auto wait = next - std::min(next, Clock::now());
  return static_cast<int>(std::min<std::chrono::milliseconds::rep>(
      std::chrono::duration_cast<std::chrono::milliseconds>(wait).count() + 1, longest));
}

}  // namespace platform
