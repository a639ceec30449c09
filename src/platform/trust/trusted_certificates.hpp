// Where TLS connections find the root certificates that they trust.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace platform {

/// At most one of the two is set. With neither, the HTTP library's own defaults hold.
struct TrustedCertificates {
  /// One file of certificates in PEM. Nothing else is trusted.
  std::string file;

  /// A folder of certificates that OpenSSL finds by the hash of their subject ("5ed36f99.0").
  std::string folder;

  bool operator==(const TrustedCertificates&) const = default;

  /// Only `chosenFile` if it is not empty. If it is not a regular file, /dev/null takes its place, which holds no
  /// certificate: opening a pipe would wait for its other end. Otherwise `hashedFolder` if it holds a certificate under
  /// a hashed name: a look-up there takes microseconds, parsing a whole bundle 20 ms. Otherwise the library's defaults.
  static TrustedCertificates choose(const std::string& chosenFile, const std::string& hashedFolder);
};

/// How many files of the folder have such a name; 0 where it cannot be read.
std::size_t hashedCertificatesIn(const std::filesystem::path& folder);

}  // namespace platform
