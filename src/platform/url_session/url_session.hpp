// An ephemeral HTTP session: GET requests over HTTP/1.1 and HTTP/2, nothing kept on disk, no cookies, no redirects.
// Requests that run at the same time share one connection over HTTP/2; no connection outlives the requests on it. The
// caller judges an answer's status.
//
//   const UrlSession session(UrlSessionConfiguration::ephemeral());
//   const LoadResult result = session.data({.url = *Url::parse("https://example.org/day")});
//
//   404 with a body        -> an answer with status 404
//   connection refused     -> TransportError, kind cannotConnect
//   no answer in time      -> TransportError, kind timedOut
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>

#include <absl/time/time.h>

#include "platform/url_session/load_result.hpp"
#include "platform/url_session/url_request.hpp"

namespace platform {

/// Numbered as the widget platform numbers them.
enum class CookieAcceptPolicy {
  /// Cookies that a server sets are dropped.
  never = 1,
};

struct UrlSessionConfiguration {
  /// Longest wait without a byte from the server. Must not be shorter than the limit for the whole load, which
  /// therefore always ends the load first: the session enforces only that one.
  absl::Duration timeoutIntervalForRequest = absl::Seconds(60);

  /// Longest time for a whole load, from the call to the last byte.
  absl::Duration timeoutIntervalForResource = absl::Seconds(60);

  CookieAcceptPolicy cookieAcceptPolicy = CookieAcceptPolicy::never;

  /// Whether stored cookies are sent. A session that accepts none has none to send.
  bool shouldSetCookies = false;

  /// A longer body ends its load with `tooLarge`.
  std::size_t longestBody = std::size_t{16} << 20;

  /// A file of root certificates (PEM), the only ones that are then trusted; empty for the system's.
  std::string trustedRootsFile;

  /// The system's root certificates as a folder in which OpenSSL finds them by their hash. Used where no file is named
  /// and the folder holds such names; otherwise the HTTP library's own default counts.
  std::string trustedRootsFolder;

  /// The defaults above, with the file that the environment variable SSL_CERT_FILE names and the HTTP library's folder.
  static UrlSessionConfiguration ephemeral();
};

class TransferWorker;

class UrlSession {
 public:
  /// Does not start the worker thread yet: `prepare` or the first load does.
  explicit UrlSession(UrlSessionConfiguration configuration);

  /// Ends loads under way with `cancelled` and joins the worker thread.
  ~UrlSession();

  UrlSession(const UrlSession&) = delete;
  UrlSession& operator=(const UrlSession&) = delete;

  /// Starts the worker thread, which makes the HTTP library ready while the caller does something else.
  void prepare() const { worker(); }

  /// Loads and waits for the whole answer. Any number of threads may load at once. A stop request ends the load with
  /// `cancelled` in whatever phase it is.
  LoadResult data(const UrlRequest& request, std::stop_token stop = {}) const;

  const UrlSessionConfiguration& configuration() const { return configuration_; }

 private:
  TransferWorker* worker() const;
  base::Deadline deadlineOf(const UrlRequest& request) const;

  const UrlSessionConfiguration configuration_;
  mutable std::once_flag workerOnce_;
  mutable std::unique_ptr<TransferWorker> worker_;
};

}  // namespace platform
