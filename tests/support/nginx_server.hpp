// A real nginx on loopback, for what a scripted server cannot be: TLS and HTTP/2 as they are met in the world.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/loopback_socket.hpp"
#include "support/temporary_folder.hpp"
#include "support/test_certificates.hpp"
#include "support/tool.hpp"

namespace support {

enum class NginxProtocol { plainHttp1, tlsHttp1, tlsHttp2 };

struct NginxSettings {
  NginxProtocol protocol = NginxProtocol::tlsHttp2;
  ServerCertificate certificate = ServerCertificate::valid;

  /// Bodies by path; the answers are 200 with "application/json".
  std::map<std::string, std::string> bodies = {};

  /// Requests whose Authorization differs get 401. No quotes, backslashes or dollars.
  std::optional<std::string> requiredAuthorization = std::nullopt;

  /// Further directives of the server block.
  std::string directives = {};
};

/// One line of the access log.
struct NginxRequest {
  std::string protocol;    // "HTTP/1.1", "HTTP/2.0"
  std::string connection;  // equal for requests of one connection
  std::string status;
  std::string target;
  std::string authorization;  // empty without
};

class NginxServer {
 public:
  /// Takes requests from now on. Throws std::runtime_error when nginx or openssl is missing.
  explicit NginxServer(const NginxSettings& settings);

  std::uint16_t port() const { return port_; }
  /// "https://127.0.0.1:PORT" (or http) and the path.
  std::string url(const std::string& path = {}) const;
  /// The root certificate that a client has to trust; empty for plain HTTP.
  std::string authorityFile() const { return certificates_ ? certificates_->authorityFile() : std::string(); }

  /// Ends the server, so that every line is written, and reads what it was asked.
  std::vector<NginxRequest> endAndReadLog();
  /// What nginx has to say about a test that fails.
  std::string errorLog() const;

 private:
  std::string configuration(const NginxSettings& settings) const;

  TemporaryFolder folder_;
  std::optional<TestCertificates> certificates_;
  std::uint16_t port_ = 0;
  std::optional<RunningTool> process_;
};

}  // namespace support
