// Drives every transfer of a session on one thread. Transfers that run at the same time may share a connection. It
// sleeps until a socket or a caller needs it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/trust/trusted_certificates.hpp"
#include "platform/url_session/exchange.hpp"
#include "platform/url_session/pending_load.hpp"

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

  /// Carries out the queue's loads until the queue ends. If the HTTP library does not start, every load is refused.
  void run();

 private:
  using Exchanges = std::vector<std::unique_ptr<Exchange>>;

  struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };

  bool takeSubmitted();
  void begin(const std::shared_ptr<PendingLoad>& load);
  void collectFinished();
  void dropAbandoned();
  void finish(Exchange& exchange, LoadResult result);
  void cancelAll();
  TrustedCertificates trustedFor(const Url& url) const;

  LoadQueue& queue_;
  const TransferSettings& settings_;
  std::unique_ptr<CURLM, FreeMulti> multi_;
  Exchanges exchanges_;
};

}  // namespace platform
