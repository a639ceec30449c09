// One load on the worker thread: a libcurl handle with all its options, and the response that it collects.
// The transfer loop decides when it starts and when it is given up.
#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include <curl/curl.h>

#include "platform/trust/trusted_certificates.hpp"
#include "platform/url_session/pending_load.hpp"
#include "platform/url_session/response_collector.hpp"

namespace platform {

class Exchange {
 public:
  /// Null when the library refuses an option or memory runs out.
  static std::unique_ptr<Exchange> create(std::shared_ptr<PendingLoad> load, std::size_t longestBody,
                                          const TrustedCertificates& trusted);

  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  CURL* handle() const { return easy_.get(); }
  PendingLoad& load() const { return *load_; }

  /// The result of the library's final code and the response gathered so far. Call once.
  LoadResult result(CURLcode code);

 private:
  struct FreeHandle {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct FreeList {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  Exchange(std::shared_ptr<PendingLoad> load, std::size_t longestBody);

  bool setOptions(const TrustedCertificates& trusted, std::size_t longestBody);
  bool setHeaders();
  bool connectionSpeaksHttp2() const;

  static std::size_t onHeader(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* self);
  static int onConnected(void* self, char* remoteAddress, char* localAddress, int remotePort, int localPort);

  const std::shared_ptr<PendingLoad> load_;
  ResponseCollector response_;
  bool headerCannotBeSent_ = false;
  bool sent_ = false;     ///< the request was sent, or is about to be
  bool repeats_ = false;  ///< the library was about to send it again and was stopped
  std::array<char, CURL_ERROR_SIZE> errorText_{};
  // The handle refers to the members above, so it goes first.
  std::unique_ptr<curl_slist, FreeList> headers_;
  std::unique_ptr<CURL, FreeHandle> easy_;
};

}  // namespace platform
