// Drives every transfer of a session on one thread, sharing connections between them, and keeps the loads' limits. It
// sleeps until a socket, a caller or a deadline needs it.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/url_session/exchange.hpp"
#include "platform/url_session/load_queue.hpp"
#include "platform/url_session/trusted_certificates.hpp"

namespace platform {

struct TransferSettings {
  /// A longer body ends its load with `tooLarge`.
  std::size_t longestBody;
  /// A file of trusted root certificates (PEM); empty for the system's.
  std::string trustedRootsFile;
  /// A folder of hashed root certificates, used where no file is named.
  std::string trustedRootsFolder;
};

class TransferLoop {
 public:
  /// Both must outlive the loop.
  TransferLoop(LoadQueue& queue, const TransferSettings& settings);
  ~TransferLoop();

  TransferLoop(const TransferLoop&) = delete;
  TransferLoop& operator=(const TransferLoop&) = delete;

  /// Does the queue's loads until it ends. Where the HTTP library does not start, every load is refused.
  void run();

 private:
  using Clock = TimeLimits::Clock;
  using Exchanges = std::vector<std::unique_ptr<Exchange>>;

  struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };

  bool takeSubmitted();
  void begin(const std::shared_ptr<PendingLoad>& load);
  void collectFinished();
  void giveUpOverdueAndAbandoned();
  void finish(Exchange& exchange, LoadResult result);
  void rememberProtocol(const Exchange& exchange);
  void cancelAll();
  const TrustedCertificates& trustedFor(const Url& url);
  int waitMilliseconds() const;

  LoadQueue& queue_;
  const TransferSettings& settings_;
  std::unique_ptr<CURLM, FreeMulti> multi_;
  Exchanges exchanges_;
  std::set<std::string> originsWithHttp2_;
  std::optional<TrustedCertificates> trusted_;
};

}  // namespace platform
