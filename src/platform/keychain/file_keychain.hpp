// Keychain items as files `<root>/<access group>/<service>/<account>`, each of which holds exactly its item's bytes.
// Used on machines without a Secret Service, and for trials with a folder of the user's choice. The program that writes
// the items creates the folders with mode 0700 and the files with 0600.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/keychain/keychain.hpp"
#include "platform/keychain/refusals.hpp"

namespace platform {

/// Reads an item only if no other user could have read or written it: the root, the two folders below it and the file
/// must belong to this user, be closed to all others and not be symbolic links. Otherwise the status is `insecure`, and
/// the reason is reported once to `refusals`. An attribute that is not a file name (empty, "..", with a '/') matches no
/// item.
class FileKeychain final : public Keychain {
 public:
  /// `refusals` must outlive this.
  FileKeychain(const std::filesystem::path& root, Refusals& refusals);

  /// A keychain in the relative path `root` below `base`. Every folder of `root` is checked; `base` is not.
  static FileKeychain below(const std::filesystem::path& base, const std::filesystem::path& root, Refusals& refusals);

 private:
  KeychainResult find(const KeychainQuery& query, base::Deadline deadline) override;
  KeychainStatus erase(const KeychainQuery& query, base::Deadline deadline) override;

  std::filesystem::path root_;          // the first folder that is checked
  std::vector<std::string> belowRoot_;  // further ones, above those of the items
  Refusals& refusals_;
};

}  // namespace platform
