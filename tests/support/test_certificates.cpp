#include "support/test_certificates.hpp"

#include "support/tool.hpp"

namespace support {

TestCertificates::TestCertificates(ServerCertificate kind) {
  const auto openssl = [this](std::vector<std::string> arguments) {
    runTool("openssl", "openssl", std::move(arguments), folder_.path("openssl.log"));
  };
  const std::string curve = "ec_paramgen_curve:P-256";
  const std::string names =
      kind == ServerCertificate::wrongHost ? "DNS:elsewhere.example" : "DNS:localhost,IP:127.0.0.1";
  const std::string days = kind == ServerCertificate::expired ? "-1" : "2";
  openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", curve, "-nodes", "-days", "2", "-subj", "/CN=Test Authority",
           "-keyout", folder_.path("authority.key"), "-out", authorityFile()});
  openssl({"req", "-newkey", "ec", "-pkeyopt", curve, "-nodes", "-subj", "/CN=Test Server", "-addext",
           "subjectAltName=" + names, "-keyout", keyFile(), "-out", folder_.path("server.csr")});
  openssl({"x509", "-req", "-in", folder_.path("server.csr"), "-CA", authorityFile(), "-CAkey",
           folder_.path("authority.key"), "-CAcreateserial", "-days", days, "-copy_extensions", "copy", "-out",
           certificateFile()});
}

}  // namespace support
