// Which root certificates TLS connections trust.
#pragma once

#include <string>

namespace platform {

/// At most one of the two is set; with neither the HTTP library's own defaults hold.
struct TrustedRoots {
  /// One file of certificates in PEM.
  std::string file;

  /// A folder of certificates that OpenSSL finds by the hash of their subject ("5ed36f99.0").
  std::string folder;

  bool operator==(const TrustedRoots&) const = default;

  /// `chosenFile` where it is not empty. Else the library's default folder, where it is hashed and holds no fewer
  /// certificates than the library's default file: reading one certificate from it takes microseconds, parsing the
  /// whole file 20 ms. The same folder where `chosenFile` is the default file itself and the folder holds as many.
  static TrustedRoots choose(const std::string& chosenFile);

  /// The same with the library's defaults given. An empty text stands for a default that the library has not.
  static TrustedRoots choose(const std::string& chosenFile, const std::string& defaultFile,
                             const std::string& defaultFolder);
};

}  // namespace platform
