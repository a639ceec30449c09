// A certificate authority made for one test, and a server's certificate signed by it.
#pragma once

#include <string>

#include "support/temporary_folder.hpp"

namespace support {

enum class ServerCertificate {
  /// For localhost and 127.0.0.1.
  valid,
  expired,
  wrongHost,
};

class TestCertificates {
 public:
  /// Throws std::runtime_error when the openssl program is missing or fails.
  explicit TestCertificates(ServerCertificate kind = ServerCertificate::valid);

  std::string authorityFile() const { return folder_.path("authority.pem"); }
  std::string certificateFile() const { return folder_.path("server.pem"); }
  std::string keyFile() const { return folder_.path("server.key"); }

 private:
  TemporaryFolder folder_;
};

}  // namespace support
