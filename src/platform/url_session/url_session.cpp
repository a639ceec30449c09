#include "platform/url_session/url_session.hpp"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <utility>

#include "platform/url_session/http_library.hpp"
#include "platform/url_session/pending_load.hpp"
#include "platform/url_session/request_headers.hpp"
#include "platform/url_session/transfer_worker.hpp"

namespace platform {
namespace {

bool canBeLoaded(const Url& url) { return (url.scheme() == "http" || url.scheme() == "https") && url.host(); }

}  // namespace

UrlSessionConfiguration UrlSessionConfiguration::ephemeral() {
  UrlSessionConfiguration configuration;
  if (const char* const file = std::getenv("SSL_CERT_FILE")) configuration.trustedRootsFile = file;
  configuration.trustedRootsFolder = defaultCertificateFolder();
  return configuration;
}

UrlSession::UrlSession(UrlSessionConfiguration configuration) : configuration_(std::move(configuration)) {
  assert(configuration_.timeoutIntervalForRequest >= configuration_.timeoutIntervalForResource);
}

UrlSession::~UrlSession() = default;

TransferWorker* UrlSession::worker() const {
  std::call_once(workerOnce_, [this] {
    worker_ = TransferWorker::start({.longestBody = configuration_.longestBody,
                                     .trustedRootsFile = configuration_.trustedRootsFile,
                                     .trustedRootsFolder = configuration_.trustedRootsFolder});
  });
  return worker_.get();
}

base::Deadline UrlSession::deadlineOf(const UrlRequest& request) const {
  assert(request.timeoutInterval >= configuration_.timeoutIntervalForResource);
  const auto whole = absl::ToChronoNanoseconds(configuration_.timeoutIntervalForResource);
  return std::min(base::Deadline::after(whole), request.deadline);
}

LoadResult UrlSession::data(const UrlRequest& request, std::stop_token stop) const {
  using Kind = TransportError::Kind;
  if (!canBeLoaded(request.url)) {
    return std::unexpected(TransportError{Kind::unsupportedUrl, 0, "not an http or https URL with a host"});
  }
  auto headers = RequestHeaders::encode(request.headers);
  if (!headers) return std::unexpected(std::move(headers).error());
  // Shared, because a cancelled caller returns at once, while the worker still has to release the transfer.
  const auto load = std::make_shared<PendingLoad>(request.url, *std::move(headers), deadlineOf(request));
  if (stop.stop_requested()) return std::unexpected(cancelledError());
  TransferWorker* const transfers = worker();
  if (transfers == nullptr) return std::unexpected(TransportError{Kind::other, 0, "no thread could be started"});
  LoadQueue& queue = transfers->queue();
  queue.submit(load);
  return load->await(stop, [&queue] { queue.wake(); });
}

}  // namespace platform
