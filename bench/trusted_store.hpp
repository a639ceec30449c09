// The system's store of trusted certificates with test authorities in it, without touching the system's own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace bench {

/// A copy of the system's store below `folder`, with `authorities` (files) added both to the bundle and, under their
/// hashes, to the folder. Throws where the system has no store.
class TrustedStore {
 public:
  TrustedStore(std::filesystem::path folder, const std::vector<std::string>& authorities);

  /// All certificates in one file.
  std::string bundle() const { return (folder_ / "ca-certificates.crt").string(); }

  /// Puts the copy in the store's place for this process and the programs that it starts from now on, in a mount
  /// namespace of their own. False where the system does not allow it.
  bool takeThePlaceOfTheSystems() const;

 private:
  std::filesystem::path folder_;
};

}  // namespace bench
