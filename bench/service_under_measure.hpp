// One service on loopback and the two commands that are compared on it: the extension that answers a timeline, and the
// plain HTTP client that fetches the same three addresses.
#pragma once

#include <string>

#include "support/nginx_server.hpp"
#include "timed_process.hpp"

namespace bench {

class ServiceUnderMeasure {
 public:
  explicit ServiceUnderMeasure(support::NginxProtocol protocol);

  const support::NginxServer& server() const { return server_; }

  /// With `trustedFile` empty both rely on the system's store.
  Command extension(const std::string& program, const std::string& trustedFile) const;
  Command client(const std::string& trustedFile) const;

  static std::string timelineRequest();

  /// Throws std::runtime_error unless the answer holds the day that the service told.
  static void checkAnswer(const std::string& line);

 private:
  support::NginxServer server_;
  support::TemporaryFolder folder_;
};

}  // namespace bench
