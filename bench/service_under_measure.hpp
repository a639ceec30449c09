// One service on loopback and the commands that are compared on it: the extension that answers a timeline, the plain
// HTTP client that fetches the same three addresses, and two programs that also select and sort what it sent.
#pragma once

#include <string>
#include <vector>

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

  /// The same day by curl and jq, and by a Python script with three threads. Over http only.
  Command clientAndJq() const;
  Command pythonScript() const;

  static std::string timelineRequest();

  /// Throws std::runtime_error unless the answer holds the day that the service told.
  static void checkAnswer(const std::string& line);

 private:
  Command peer(std::vector<std::string> words) const;

  support::NginxServer server_;
  support::TemporaryFolder folder_;
};

}  // namespace bench
