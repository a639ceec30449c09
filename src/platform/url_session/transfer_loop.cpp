#include "platform/url_session/transfer_loop.hpp"

#include <algorithm>
#include <limits>

#include <curl/curl.h>

#include "platform/url_session/http_library.hpp"

namespace platform {

TransferLoop::TransferLoop(LoadQueue& queue, const TransferSettings& settings) : queue_(queue), settings_(settings) {
  if (startHttpLibrary()) multi_.reset(curl_multi_init());
  // Without its wake-up descriptors the loop would never notice a new load.
  if (multi_ && curl_multi_wakeup(multi_.get()) != CURLM_OK) multi_.reset();
  if (multi_) queue_.setWaker([multi = multi_.get()] { curl_multi_wakeup(multi); });
}

TransferLoop::~TransferLoop() { queue_.setWaker({}); }

void TransferLoop::run() {
  if (!multi_) return queue_.refuse({TransportError::Kind::other, 0, "the HTTP library did not start"});
  while (takeSubmitted()) {
    int running = 0;
    curl_multi_perform(multi_.get(), &running);
    collectFinished();
    dropAbandoned();
    constexpr int untilWoken = std::numeric_limits<int>::max();  // the library shortens it to its own timers
    curl_multi_poll(multi_.get(), nullptr, 0, untilWoken, nullptr);
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
  auto exchange = Exchange::create(load, settings_.longestBody, trustedFor(load->url()));
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
    finish(*exchange, exchange->result(code));
  }
}

void TransferLoop::dropAbandoned() {
  for (std::size_t i = exchanges_.size(); i-- > 0;) {  // from the end, as `finish` erases
    Exchange& exchange = *exchanges_[i];
    if (exchange.load().isAbandoned()) finish(exchange, std::unexpected(cancelledError()));
  }
}

// Settles first, so that the caller does not wait while the library closes the connection.
void TransferLoop::finish(Exchange& exchange, LoadResult result) {
  exchange.load().settle(std::move(result));
  curl_multi_remove_handle(multi_.get(), exchange.handle());
  std::erase_if(exchanges_, [&exchange](const auto& each) { return each.get() == &exchange; });
}

void TransferLoop::cancelAll() {
  while (!exchanges_.empty()) finish(*exchanges_.back(), std::unexpected(cancelledError()));
}

// Chosen anew for each load, because the files may change. Plain HTTP does not need the system's certificates; a chosen
// file also applies to a proxy with TLS.
TrustedCertificates TransferLoop::trustedFor(const Url& url) const {
  if (url.scheme() != "https" && settings_.trustedRootsFile.empty()) return {};
  return TrustedCertificates::choose(settings_.trustedRootsFile, settings_.trustedRootsFolder);
}

}  // namespace platform
